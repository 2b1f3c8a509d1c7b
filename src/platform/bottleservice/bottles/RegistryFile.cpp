#include "bottleservice/bottles/RegistryFile.h"

#include "fenk/system/RegularFile.h"

namespace RegistryFile {

namespace {

constexpr qint64 MaximumBytes = 64 * 1024 * 1024;
constexpr int MaximumHexDigits = 4;
constexpr int MaximumLineBytes = 4096;
constexpr int MaximumKeys = 50000;

/// Reads a quoted text and moves behind the closing quote. Null if there is none.
QString unquoted(const QByteArray& line, int* at, char end) {
    QByteArray plain;
    QString text("");
    const auto flush = [&] {
        text += QString::fromUtf8(plain);
        plain.clear();
    };
    for (int i = *at + 1; i < line.size(); ++i) {
        if (line[i] == end) {
            flush();
            *at = i + 1;
            return text;
        }
        if (line[i] != '\\') {
            plain += line[i];
            continue;
        }
        if (++i >= line.size())
            break;
        if (line[i] == 'x') {
            int digits = 0;
            while (digits < MaximumHexDigits && i + 1 + digits < line.size() &&
                   isxdigit(uchar(line[i + 1 + digits])))
                ++digits;
            flush();
            text += QChar(ushort(line.mid(i + 1, digits).toUInt(nullptr, 16)));
            i += digits;
        } else {
            plain += line[i] == 'n' ? '\n' : line[i] == 't' ? '\t' : line[i] == '0' ? '\0' : line[i];
        }
    }
    return {};
}

void readValue(const QByteArray& line, Values* values) {
    int at = 0;
    const QString name = line.startsWith('@') ? QString("") : unquoted(line, &at, '"');
    if (name.isNull())
        return;
    at = line.indexOf('=', at) + 1;
    const QByteArray type = line.mid(at, 7);
    if (type.startsWith("str("))
        at = line.indexOf(':', at) + 1;
    if (at <= 0 || at >= line.size() || line[at] != '"')
        return;
    const QString text = unquoted(line, &at, '"');
    if (!text.isNull())
        values->insert(name.toLower(), text.section(QChar(0), 0, 0));
}

}  // namespace

Keys read(const QString& path, const QString& prefix) {
    const auto content = Fenk::RegularFile::read(path, MaximumBytes);
    return content && content->size() <= MaximumBytes ? parse(*content, prefix) : Keys();
}

Keys parse(const QByteArray& content, const QString& prefix) {
    Keys keys;
    Values* values = nullptr;
    for (int begin = 0; begin < content.size();) {
        int end = content.indexOf('\n', begin);
        if (end < 0)
            end = content.size();
        const QByteArray line = content.mid(begin, qMin(end - begin, MaximumLineBytes));
        const bool isWhole = end - begin <= MaximumLineBytes;
        begin = end + 1;
        if (!isWhole || keys.size() > MaximumKeys)
            continue;
        if (line.startsWith('[')) {
            int at = 0;
            const QString path = unquoted(line, &at, ']');
            const bool isBelow = path.size() > prefix.size() && path.startsWith(prefix, Qt::CaseInsensitive);
            values = isBelow ? &keys[path.mid(prefix.size()).toLower()] : nullptr;
        } else if (values && (line.startsWith('"') || line.startsWith('@'))) {
            readValue(line, values);
        }
    }
    return keys;
}

}  // namespace RegistryFile
