#include "fenk/system/DesktopEntry.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace Fenk {
namespace {

constexpr qint64 MaxBytes = 1024 * 1024;

/// Splits at unescaped semicolons if separator is ';', and resolves escapes.
QStringList unescaped(const QString& raw, QChar separator = QChar()) {
    QStringList values;
    QString value;
    for (int i = 0; i < raw.size(); ++i) {
        const QChar c = raw.at(i);
        if (c == separator && !separator.isNull()) {
            values.append(value);
            value.clear();
        } else if (c != '\\' || i + 1 == raw.size()) {
            value += c;
        } else {
            const QChar escape = raw.at(++i);
            static const QString letters = QStringLiteral("sntr\\;");
            static const QString meanings = QStringLiteral(" \n\t\r\\;");
            const int index = letters.indexOf(escape);
            if (index < 0)
                value += c;  // an escape of another layer, as in Exec
            value += index < 0 ? escape : meanings.at(index);
        }
    }
    if (separator.isNull() || !value.isEmpty())
        values.append(value);
    return values;
}

bool isKey(const QString& key) {
    const int bracket = key.indexOf('[');
    const QString plain = bracket < 0 ? key : key.left(bracket);
    const bool letters = std::all_of(plain.cbegin(), plain.cend(), [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || c == '-' || c == '_');
    });
    return letters && !plain.isEmpty() && (bracket < 0 || (key.endsWith(']') && key.size() > bracket + 2));
}

}  // namespace

DesktopEntry::DesktopEntry(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > MaxBytes || !file.open(QIODevice::ReadOnly)) {
        m_status = AccessError;
        return;
    }
    const QByteArray bytes = file.read(MaxBytes);
    parse(QString::fromUtf8(bytes));
    if (bytes.contains('\0'))
        m_status = FormatError;  // the rest of the file has not been read
}

void DesktopEntry::parse(const QString& text) {
    const QStringList lines = text.split('\n');
    int current = -1;
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith('#'))
            continue;
        if (trimmed.startsWith('[') && trimmed.endsWith(']')) {
            const QString name = trimmed.mid(1, trimmed.size() - 2);
            const Group* same = group(name);
            if (same || name.isEmpty())
                m_status = FormatError;
            current = same ? int(same - m_groups.constData()) : m_groups.size();
            if (!same)
                m_groups.append({name, {}, {}});
        } else if (current < 0 || !parseEntry(trimmed, m_groups[current])) {
            m_status = FormatError;
        }
    }
    if (!group(QStringLiteral("Desktop Entry")))
        m_status = FormatError;
}

bool DesktopEntry::parseEntry(const QString& line, Group& group) const {
    const int equals = line.indexOf('=');
    const QString key = line.left(qMax(0, equals)).trimmed();
    if (!isKey(key) || group.values.contains(key))
        return false;
    group.keys.append(key);
    group.values.insert(key, line.mid(equals + 1).trimmed());
    return true;
}

const DesktopEntry::Group* DesktopEntry::group(const QString& name) const {
    const auto it = std::find_if(m_groups.cbegin(), m_groups.cend(),
                                 [&](const Group& candidate) { return candidate.name == name; });
    return it == m_groups.cend() ? nullptr : &*it;
}

QStringList DesktopEntry::allGroups() const {
    QStringList names;
    for (const Group& item : m_groups)
        names.append(item.name);
    return names;
}

QStringList DesktopEntry::keys(const QString& groupName) const {
    const Group* found = group(groupName);
    return found ? found->keys : QStringList();
}

bool DesktopEntry::contains(const QString& key, const QString& groupName) const {
    const Group* found = group(groupName);
    return found && found->values.contains(key);
}

QString DesktopEntry::stringValue(const QString& key, const QString& groupName,
                                  const QString& defaultValue) const {
    return contains(key, groupName) ? unescaped(group(groupName)->values.value(key)).first() : defaultValue;
}

QStringList DesktopEntry::stringListValue(const QString& key, const QString& groupName) const {
    return contains(key, groupName) ? unescaped(group(groupName)->values.value(key), ';') : QStringList();
}

QString DesktopEntry::localizedValue(const QString& key, const QString& groupName,
                                     const QString& defaultValue, const QLocale& locale) const {
    const QString name = locale.name();  // "zh_CN"
    for (const QString& tag : {name, name.section('_', 0, 0)}) {
        const QString localized = key + '[' + tag + ']';
        if (contains(localized, groupName))
            return stringValue(localized, groupName, defaultValue);
    }
    return stringValue(key, groupName, defaultValue);
}

}  // namespace Fenk
