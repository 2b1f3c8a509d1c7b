#include "storeserver/data/YamlMap.h"

namespace StoreServer {

namespace {

constexpr int ShownCharacters = 60;

bool hasControlCharacter(const QString& text, YamlMap::Lines lines) {
    return std::any_of(text.begin(), text.end(), [lines](QChar character) {
        return character.category() == QChar::Other_Control &&
               !(lines == YamlMap::Lines::Many && character == '\n');
    });
}

}  // namespace

YamlMap::YamlMap(const YamlTree& node, const QString& file, Faults& faults)
    : m_node(node), m_file(file), m_faults(faults) {
    if (node.kind != YamlTree::Kind::Map)
        m_faults.append({m_file, node.located("This must be a map of keys and values.")});
}

const YamlTree* YamlMap::child(const QString& key) const {
    const auto entry = std::find_if(m_node.entries.begin(), m_node.entries.end(),
                                    [&key](const auto& candidate) { return candidate.first.text == key; });
    const bool isThere = entry != m_node.entries.end() && entry->second.kind != YamlTree::Kind::Null;
    return isThere ? &entry->second : nullptr;
}

const YamlTree* YamlMap::scalar(const QString& key, Need need) {
    m_asked.insert(key);
    const YamlTree* node = child(key);
    if (!node && need == Need::Required && m_node.kind == YamlTree::Kind::Map)
        refuse(key, QString("\"%1\" is missing.").arg(key));
    if (node && node->kind != YamlTree::Kind::Text) {
        refuse(key, QString("\"%1\" must be a text or a number.").arg(key));
        return nullptr;
    }
    return node;
}

QString YamlMap::text(const QString& key, int maximum, Need need, Lines lines) {
    const YamlTree* node = scalar(key, need);
    if (!node)
        return {};
    const QString text = node->text.trimmed();
    if (text.isEmpty() && need == Need::Required)
        refuse(key, QString("\"%1\" is empty.").arg(key));
    else if (text.size() > maximum)
        refuse(key, QString("\"%1\" is longer than %2 characters.").arg(key).arg(maximum));
    else if (hasControlCharacter(text, lines))
        refuse(key, QString("\"%1\" has a control character.").arg(key));
    return text;
}

qint64 YamlMap::number(const QString& key, qint64 minimum, qint64 maximum, Need need) {
    const YamlTree* node = scalar(key, need);
    if (!node)
        return 0;
    bool isNumber = false;
    const qint64 number = node->text.toLongLong(&isNumber);
    if (isNumber && number >= minimum && number <= maximum)
        return number;
    refuse(key, QString("\"%1\" must be a whole number from %2 to %3.").arg(key).arg(minimum).arg(maximum));
    return 0;
}

YamlMap YamlMap::map(const QString& key, Need need) {
    static const YamlTree empty = [] {
        YamlTree node;
        node.kind = YamlTree::Kind::Map;
        return node;
    }();
    m_asked.insert(key);
    const YamlTree* node = child(key);
    if (!node && need == Need::Required && m_node.kind == YamlTree::Kind::Map)
        refuse(key, QString("\"%1\" is missing.").arg(key));
    return {node ? *node : empty, m_file, m_faults};
}

void YamlMap::refuse(const QString& key, const QString& sentence) {
    const YamlTree* node = child(key);
    m_faults.append({m_file, (node ? *node : m_node).located(sentence)});
}

void YamlMap::finish() {
    for (const auto& entry : m_node.entries) {
        if (!m_asked.contains(entry.first.text))
            m_faults.append(
                {m_file, entry.first.located(
                             QString("Unknown key \"%1\".").arg(entry.first.text.left(ShownCharacters)))});
    }
}

}  // namespace StoreServer
