#include "fenk/settings/SettingsFile.h"

#include <algorithm>

namespace Fenk {
namespace {

QString escaped(const QString& value) {
    QString text;
    text.reserve(value.size() + 8);
    for (int i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        const bool atEnd = i == 0 || i == value.size() - 1;
        if (c == '\\')
            text += "\\\\";
        else if (c == '\n')
            text += "\\n";
        else if (c == '\r')
            text += "\\r";
        else if (c == '\t')
            text += "\\t";
        else if (c == ' ' && atEnd)
            text += "\\s";
        else if (c.category() == QChar::Other_Control || c.isSurrogate() || (c.isSpace() && atEnd) ||
                 c == QChar::ReplacementCharacter)
            text += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            text += c;
    }
    return text;
}

QString unescaped(const QString& text) {
    QString value;
    value.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != '\\' || i + 1 == text.size()) {
            value += text.at(i);
            continue;
        }
        const QChar c = text.at(++i);
        bool ok = false;
        const ushort code =
            c == 'u' && i + 4 < text.size() ? text.midRef(i + 1, 4).toUShort(&ok, 16) : ushort(0);
        if (c == 'n')
            value += '\n';
        else if (c == 'r')
            value += '\r';
        else if (c == 't')
            value += '\t';
        else if (c == 's')
            value += ' ';
        else if (c == '\\')
            value += '\\';
        else if (ok) {
            value += QChar(code);
            i += 4;
        } else {
            value += '\\';  // probably a Windows path written by hand
            value += c;
        }
    }
    return value;
}

QString joined(const QString& section, const QString& name) {
    return section.isEmpty() ? name : section + '.' + name;
}

}  // namespace

SettingsFile::Line SettingsFile::parseLine(const QString& text, const QString& section) {
    Line line;
    line.text = text;
    line.section = section;
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || trimmed.startsWith('#') || trimmed.startsWith(';'))
        return line;
    const int equals = trimmed.indexOf('=');
    if (trimmed.startsWith('[') && trimmed.endsWith(']')) {
        line.kind = Kind::Section;
        line.section = trimmed.mid(1, trimmed.size() - 2).trimmed();
    } else if (equals >= 0) {
        line.kind = Kind::Entry;
        line.key = joined(section, trimmed.left(equals).trimmed());
        line.value = unescaped(trimmed.mid(equals + 1).trimmed());
    } else {
        line.kind = Kind::Bad;
    }
    return line;
}

std::optional<SettingsFile> SettingsFile::parse(const QByteArray& bytes) {
    const QString text =
        QString::fromUtf8(bytes.constData(), bytes.size());  // with the length, since bytes may contain NUL
    if (bytes.size() > MaxBytes || text.contains(QChar(0)) || text.contains(QChar::ReplacementCharacter))
        return std::nullopt;
    SettingsFile file;
    QString section;
    QStringList lines = text.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    for (QString line : qAsConst(lines)) {
        if (line.endsWith('\r'))
            line.chop(1);
        file.m_lines.append(parseLine(line, section));
        section = file.m_lines.last().section;
    }
    const bool anything = std::any_of(file.m_lines.cbegin(), file.m_lines.cend(), [](const Line& line) {
        return line.kind == Kind::Section || line.kind == Kind::Entry;
    });
    if (!anything && file.badLines() > 0)
        return std::nullopt;
    return file;
}

QByteArray SettingsFile::toBytes() const {
    QByteArray bytes;
    for (const Line& line : m_lines)
        bytes += line.text.toUtf8() + '\n';
    return bytes;
}

int SettingsFile::badLines() const {
    return int(std::count_if(m_lines.cbegin(), m_lines.cend(),
                             [](const Line& line) { return line.kind == Kind::Bad; }));
}

int SettingsFile::lastIndexOf(const QString& key) const {
    for (int i = m_lines.size() - 1; i >= 0; --i)
        if (m_lines.at(i).kind == Kind::Entry && m_lines.at(i).key == key)
            return i;
    return -1;
}

bool SettingsFile::contains(const QString& key) const {
    return lastIndexOf(key) >= 0;
}

QString SettingsFile::value(const QString& key) const {
    const int index = lastIndexOf(key);
    return index < 0 ? QString() : m_lines.at(index).value;
}

void SettingsFile::setValue(const QString& key, const QString& value) {
    const int index = lastIndexOf(key);
    if (index >= 0) {
        const QString section = m_lines.at(index).section;
        const QString name = section.isEmpty() ? key : key.mid(section.size() + 1);
        m_lines[index] = parseLine(name + '=' + escaped(value), section);
        return;
    }
    const QString section = key.left(qMax(0, key.indexOf('.')));
    const QString name = section.isEmpty() ? key : key.mid(section.size() + 1);
    const Line entry = parseLine(name + '=' + escaped(value), section);
    // After the last entry of the section, so comments and blank lines at its end stay there.
    for (int i = m_lines.size() - 1; i >= 0; --i) {
        const Line& line = m_lines.at(i);
        if (line.section == section && (line.kind == Kind::Entry || line.kind == Kind::Section)) {
            m_lines.insert(i + 1, entry);
            return;
        }
    }
    if (section.isEmpty()) {
        m_lines.prepend(entry);
        return;
    }
    if (!m_lines.isEmpty())
        m_lines.append(parseLine(QString(), m_lines.last().section));
    m_lines.append(parseLine('[' + section + ']', section));
    m_lines.append(entry);
}

}  // namespace Fenk
