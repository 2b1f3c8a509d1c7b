#include "bottleservice/bottles/PublicBottles.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include "bottleservice/bottles/BottleName.h"

namespace {

constexpr qint64 MaximumTableBytes = 1024 * 1024;

bool matchesWildcard(const QString& pattern, const QString& text) {
    // "*" must also match "/", which values of an inspection may contain.
    QString expression = QRegularExpression::escape(pattern);
    expression.replace("\\*", ".*").replace("\\?", ".");
    return QRegularExpression("\\A" + expression + "\\z", QRegularExpression::CaseInsensitiveOption |
                                                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

bool anyMatches(const QJsonArray& patterns, const QString& text) {
    for (const QJsonValue& pattern : patterns) {
        if (matchesWildcard(pattern.toString(), text))
            return true;
    }
    return false;
}

bool inspectionMatches(const QJsonObject& wanted, const QJsonObject& found) {
    for (auto it = wanted.begin(); it != wanted.end(); ++it) {
        if (!matchesWildcard(it.value().toString(), found.value(it.key()).toVariant().toString()))
            return false;
    }
    return true;
}

QString checkRule(const QJsonObject& rule) {
    const QString bottle = rule.value("bottle").toString();
    if (!BottleName::isPublic(bottle) || !BottleName::check(bottle).isEmpty())
        return "its bottle is no public bottle";
    bool conditional = false;
    for (const char* key : {"md5sum", "filename"}) {
        const QJsonValue value = rule.value(QLatin1String(key));
        if (!value.isUndefined() && (!value.isArray() || value.toArray().isEmpty()))
            return QString("its %1 is no list").arg(key);
        conditional = conditional || value.isArray();
    }
    const QJsonValue inspection = rule.value("peinfo");
    if (!inspection.isUndefined() && inspection.toObject().isEmpty())
        return "its peinfo names no key";
    return conditional || inspection.isObject() ? QString() : QString("it has no condition");
}

bool ruleMatches(const QJsonObject& rule, const QJsonObject& query) {
    if (rule.contains("md5sum") && !anyMatches(rule["md5sum"].toArray(), query["md5sum"].toString()))
        return false;
    if (rule.contains("filename") && !anyMatches(rule["filename"].toArray(), query["filename"].toString()))
        return false;
    return inspectionMatches(rule["peinfo"].toObject(), query["peinfo"].toObject());
}

}  // namespace

PublicBottles PublicBottles::parse(const QByteArray& json) {
    PublicBottles table;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        qWarning() << "the table of public bottles is no JSON array and is ignored";
    for (const QJsonValue& value : document.array()) {
        const QString fault = checkRule(value.toObject());
        if (fault.isEmpty())
            table.m_rules.push_back(value.toObject());
        else
            qWarning() << "a rule for public bottles is ignored:" << fault;
    }
    return table;
}

PublicBottles PublicBottles::load(const QString& path) {
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaximumTableBytes) {
        qWarning() << "cannot read the table of public bottles" << path << file.errorString();
        return {};
    }
    return parse(file.readAll());
}

QString PublicBottles::bottleFor(const QJsonObject& query) const {
    for (const QJsonObject& rule : m_rules) {
        if (ruleMatches(rule, query))
            return rule["bottle"].toString();
    }
    return {};
}
