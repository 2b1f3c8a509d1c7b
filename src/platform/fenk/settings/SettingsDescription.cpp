#include "fenk/settings/SettingsDescription.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QVector>

namespace Fenk {
namespace {

constexpr int MaxDepth = 16;

std::optional<SettingsDescription::Type> typeFromName(const QString& name) {
    if (name == "text")
        return SettingsDescription::Type::Text;
    if (name == "switch")
        return SettingsDescription::Type::Switch;
    if (name == "number")
        return SettingsDescription::Type::Number;
    if (name == "list")
        return SettingsDescription::Type::List;
    return std::nullopt;
}

struct Found {
    QString key;
    QJsonObject option;
};

bool collect(const QJsonObject& group, const QStringList& parents, QVector<Found>& found, QString& error) {
    if (parents.size() > MaxDepth) {
        error = "groups are nested too deep";
        return false;
    }
    for (const QJsonValue& value : group.value("options").toArray()) {
        const QJsonObject option = value.toObject();
        if (!option.value("key").isString()) {
            error = "an option of \"" + parents.join('.') + "\" has no key";
            return false;
        }
        found.append({(parents + QStringList{option.value("key").toString()}).join('.'), option});
    }
    for (const QJsonValue& value : group.value("groups").toArray()) {
        const QJsonObject child = value.toObject();
        const QString key = child.value("key").toString();
        if (key.isEmpty()) {
            error = "a group below \"" + parents.join('.') + "\" has no key";
            return false;
        }
        if (!collect(child, parents + QStringList{key}, found, error))
            return false;
    }
    return true;
}

}  // namespace

std::optional<SettingsDescription> SettingsDescription::fromJson(const QByteArray& json, QString* error) {
    QString reason;
    const auto fail = [&] {
        if (error)
            *error = reason;
        return std::nullopt;
    };
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (!document.isObject()) {
        reason = "no JSON object: " + parseError.errorString();
        return fail();
    }
    QVector<Found> found;
    if (!collect(document.object(), {}, found, reason))
        return fail();

    SettingsDescription description;
    static const QRegularExpression harmless(QStringLiteral("\\A[\\w.-]+\\z"));
    for (const Found& item : found) {
        if (!harmless.match(item.key).hasMatch()) {
            reason = "a key may hold letters, digits, '_', '-' and '.': " + item.key;
            return fail();
        }
        const auto type = typeFromName(item.option.value("type").toString());
        if (!type) {
            reason = "unknown type of " + item.key + ": " + item.option.value("type").toString();
            return fail();
        }
        Option option{*type, QVariant()};
        if (item.option.contains("default")) {
            option.defaultValue = converted(*type, item.option.value("default").toVariant());
            if (!option.defaultValue.isValid()) {
                reason = "the default of " + item.key + " does not fit its type";
                return fail();
            }
        }
        if (description.m_options.contains(item.key)) {
            reason = item.key + " stands twice";
            return fail();
        }
        description.m_keys.append(item.key);
        description.m_options.insert(item.key, option);
    }
    return description;
}

const SettingsDescription::Option* SettingsDescription::find(const QString& key) const {
    const auto it = m_options.constFind(key);
    return it == m_options.constEnd() ? nullptr : &*it;
}

QVariant SettingsDescription::converted(Type type, const QVariant& value) {
    switch (type) {
        case Type::Text:
            return value.canConvert<QString>() && value.type() != QVariant::StringList ? value.toString()
                                                                                       : QVariant();
        case Type::Switch:
            return value.type() == QVariant::Bool ? value : fromText(type, value.toString());
        case Type::Number: {
            bool ok = false;
            const double number = value.toDouble(&ok);
            if (!ok || value.type() == QVariant::Bool)
                return QVariant();
            const bool whole = number == double(qint64(number)) && qAbs(number) < 1e15;
            return whole ? QVariant(qint64(number)) : QVariant(number);
        }
        case Type::List: {
            if (value.type() != QVariant::StringList && value.type() != QVariant::List)
                return QVariant();
            return value.toStringList();
        }
    }
    return QVariant();
}

QString SettingsDescription::toText(Type type, const QVariant& value) {
    if (type == Type::Switch)
        return value.toBool() ? "true" : "false";
    if (type == Type::List)
        return QString::fromUtf8(
            QJsonDocument(QJsonArray::fromStringList(value.toStringList())).toJson(QJsonDocument::Compact));
    return value.toString();
}

QVariant SettingsDescription::fromText(Type type, const QString& text) {
    switch (type) {
        case Type::Text:
            return text;
        case Type::Switch: {
            const QString word = text.trimmed().toLower();
            if (word == "true" || word == "1" || word == "on" || word == "yes")
                return true;
            return word == "false" || word == "0" || word == "off" || word == "no" ? QVariant(false)
                                                                                   : QVariant();
        }
        case Type::Number:
            return converted(type, text.trimmed());
        case Type::List: {
            const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
            return document.isArray() ? converted(type, document.array().toVariantList()) : QVariant();
        }
    }
    return QVariant();
}

}  // namespace Fenk
