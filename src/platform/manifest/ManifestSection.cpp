#include "manifest/ManifestSection.h"

#include <algorithm>

#include "manifest/ManifestValues.h"

using Kind = YamlTree::Kind;

namespace {

QString atMost(int count, const char* what) {
    return QString("must have at most %1 %2").arg(count).arg(what);
}

}  // namespace

ManifestSection::ManifestSection(const YamlTree& map, const QString& title) : m_map(map), m_title(title) {
    if (map.kind != Kind::Map)
        throw ManifestRefusal(map.located(
            QString("%1 must be a map of keys and values.").arg(title.left(1).toUpper() + title.mid(1))));
}

bool ManifestSection::isWritten(const char* key) const {
    return std::any_of(m_map.entries.begin(), m_map.entries.end(),
                       [key](const auto& entry) { return entry.first.text == QLatin1String(key); });
}

bool ManifestSection::has(const char* key) {
    return find(key) != nullptr;
}

const YamlTree* ManifestSection::find(const char* key) {
    m_asked.insert(key);
    for (const auto& [name, value] : m_map.entries) {
        if (name.text == QLatin1String(key))
            return value.kind == Kind::Null ? nullptr : &value;
    }
    return nullptr;
}

QString ManifestSection::textOf(const YamlTree& node, const char* key, int maximum, Lines lines) {
    if (node.kind != Kind::Text)
        refuse(node, key, "must be text");
    if (node.text.size() > maximum)
        refuse(node, key, atMost(maximum, "characters"));
    if (!ManifestValues::hasOnlyAllowed(node.text, lines == Lines::Many ? "\n\t" : ""))
        refuse(node, key, "has a character that is not allowed there");
    return node.text;
}

QString ManifestSection::text(const char* key, int maximum, Lines lines) {
    const YamlTree* node = find(key);
    return node ? textOf(*node, key, maximum, lines) : QString();
}

QString ManifestSection::requiredText(const char* key, int maximum) {
    if (!has(key))
        refuseMissing(key);
    const QString value = text(key, maximum);
    if (value.trimmed().isEmpty())
        refuse(key, "must not be empty");
    return value;
}

std::optional<qint64> ManifestSection::number(const char* key, qint64 minimum, qint64 maximum) {
    const YamlTree* node = find(key);
    if (!node)
        return std::nullopt;
    bool ok = false;
    const qint64 value = node->isQuoted || node->kind != Kind::Text ? 0 : node->text.toLongLong(&ok);
    if (!ok || value < minimum || value > maximum)
        refuse(*node, key, QString("must be a whole number from %1 to %2").arg(minimum).arg(maximum));
    return value;
}

std::optional<bool> ManifestSection::flag(const char* key) {
    const YamlTree* node = find(key);
    if (!node)
        return std::nullopt;
    if (node->isQuoted || (node->text != "true" && node->text != "false"))
        refuse(*node, key, "must be true or false");
    return node->text == "true";
}

QStringList ManifestSection::texts(const char* key, int maximumItems, int maximum, Lines lines) {
    const YamlTree* node = find(key);
    if (!node)
        return {};
    if (node->kind != Kind::List)
        refuse(*node, key, "must be a list of texts");
    if (node->items.size() > maximumItems)
        refuse(*node, key, atMost(maximumItems, "entries"));
    QStringList all;
    for (const YamlTree& item : node->items)
        all += textOf(item, key, maximum, lines);
    return all;
}

QMap<QString, QString> ManifestSection::textMap(const char* key, int maximumItems, int maximum,
                                                const QString& expected, const TextCheck& check) {
    const YamlTree* node = find(key);
    if (!node)
        return {};
    if (node->kind != Kind::Map)
        refuse(*node, key, "must be a map of texts");
    if (node->entries.size() > maximumItems)
        refuse(*node, key, atMost(maximumItems, "entries"));
    QMap<QString, QString> all;
    for (const auto& [name, value] : node->entries) {
        const QString text =
            value.kind == Kind::Null ? QString("") : textOf(value, key, maximum, Lines::Many);
        if (name.text.size() > maximum || !ManifestValues::hasOnlyAllowed(name.text, "") ||
            !check(name.text, text))
            refuse(name, key, expected);
        all.insert(name.text, text);
    }
    return all;
}

void ManifestSection::map(const char* key, const std::function<void(ManifestSection&)>& read) {
    const YamlTree* node = find(key);
    if (!node)
        return;
    ManifestSection section(*node, key);
    read(section);
    section.finish();
}

void ManifestSection::maps(const char* key, int maximumItems,
                           const std::function<void(ManifestSection&)>& read) {
    const YamlTree* node = find(key);
    if (!node)
        return;
    if (node->kind != Kind::List)
        refuse(*node, key, "must be a list");
    if (node->items.size() > maximumItems)
        refuse(*node, key, atMost(maximumItems, "entries"));
    for (const YamlTree& item : node->items) {
        ManifestSection section(item, QString("an entry of %1").arg(key));
        read(section);
        section.finish();
    }
}

void ManifestSection::finish() const {
    for (const auto& entry : m_map.entries) {
        const YamlTree& name = entry.first;
        if (!m_asked.contains(name.text))
            throw ManifestRefusal(
                name.located(QString("\"%1\" is not a key of %2.").arg(YamlTree::shown(name.text), m_title)));
    }
}

void ManifestSection::refuse(const char* key, const QString& fault) {
    const YamlTree* node = find(key);
    refuse(node ? *node : m_map, key, fault);
}

void ManifestSection::refuse(const YamlTree& node, const char* key, const QString& fault) const {
    throw ManifestRefusal(node.located(QString("\"%1\" of %2 %3.").arg(key, m_title, fault)));
}

void ManifestSection::refuseMissing(const char* key) const {
    throw ManifestRefusal(m_map.located(QString("\"%1\" of %2 is missing.").arg(key, m_title)));
}
