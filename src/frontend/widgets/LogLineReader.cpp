#include "widgets/LogLineReader.h"

#include <QRegularExpression>
#include <algorithm>
#include <utility>

namespace {

/// Whether a character may have to be removed; the two-byte control characters begin with 0xc2.
bool mayHaveControls(const QByteArray& line) {
    return std::any_of(line.begin(), line.end(), [](char c) {
        const auto byte = uchar(c);
        return (byte < ' ' && byte != '\t') || byte == 0x7f || byte == 0xc2;
    });
}

QString plain(const QByteArray& bytes) {
    // Colours and cursor movements; window titles; other escape sequences; other control characters.
    static const QRegularExpression controls(
        "\x1b\\[[0-?]*[ -/]*[@-~]|\x1b\\][^\x07\x1b]*(?:\x07|\x1b\\\\)?|\x1b[ -/]*[0-~]?"
        "|[\\x{00}-\\x{08}\\x{0b}-\\x{1f}\\x{7f}-\\x{9f}]");
    QByteArray line = bytes;
    while (line.endsWith('\r'))
        line.chop(1);
    // Most lines have none, and the search for them takes longer than all the rest.
    if (!mayHaveControls(line))
        return QString::fromUtf8(line);
    return QString::fromUtf8(line.mid(line.lastIndexOf('\r') + 1)).remove(controls);
}

/// At most MaxLineBytes, without cutting a character.
int pieceSize(const QByteArray& bytes, int from, int end) {
    if (end - from <= LogLineReader::MaxLineBytes)
        return end - from;
    int size = LogLineReader::MaxLineBytes;
    while (size > LogLineReader::MaxLineBytes - 4 && (bytes[from + size] & 0xc0) == 0x80)
        --size;
    return size;
}

}  // namespace

QStringList LogLineReader::add(const QByteArray& bytes) {
    m_partial += bytes;
    QStringList lines;
    int from = 0;
    for (int end = m_partial.indexOf('\n'); end >= 0; end = m_partial.indexOf('\n', from)) {
        int stop = end;
        while (stop > from && m_partial[stop - 1] == '\r')
            --stop;
        do {
            const int size = pieceSize(m_partial, from, stop);
            lines += plain(m_partial.mid(from, size));
            from += size;
        } while (from < stop);
        from = end + 1;
    }
    while (m_partial.size() - from > MaxLineBytes) {
        const int size = pieceSize(m_partial, from, m_partial.size());
        lines += plain(m_partial.mid(from, size));
        from += size;
    }
    m_partial.remove(0, from);
    return lines;
}

QStringList LogLineReader::rest() {
    const QByteArray bytes = std::exchange(m_partial, {});
    return bytes.isEmpty() ? QStringList() : QStringList(plain(bytes));
}
