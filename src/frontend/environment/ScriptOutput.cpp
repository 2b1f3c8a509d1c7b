#include "environment/ScriptOutput.h"

#include <QRegularExpression>
#include <utility>

namespace {

QString plain(const QByteArray& bytes) {
    // Colours and cursor movements, titles of the window, other sequences, and what is left of the controls.
    static const QRegularExpression controls(
        "\x1b\\[[0-?]*[ -/]*[@-~]|\x1b\\][^\x07\x1b]*(?:\x07|\x1b\\\\)?|\x1b[ -/]*[0-~]?"
        "|[\\x{00}-\\x{08}\\x{0b}-\\x{1f}\\x{7f}-\\x{9f}]");
    QByteArray line = bytes;
    while (line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line.mid(line.lastIndexOf('\r') + 1)).remove(controls);
}

/// A place within the limit that does not cut a character.
int cut(const QByteArray& bytes) {
    int at = ScriptOutput::MaxLineBytes;
    while (at > ScriptOutput::MaxLineBytes - 4 && (bytes[at] & 0xc0) == 0x80)
        --at;
    return at;
}

}  // namespace

QStringList ScriptOutput::add(const QByteArray& bytes) {
    m_partial += bytes;
    QStringList lines;
    int from = 0;
    for (int end = m_partial.indexOf('\n'); end >= 0; end = m_partial.indexOf('\n', from)) {
        lines += plain(m_partial.mid(from, qMin(end - from, int(MaxLineBytes))));
        from = end + 1;
    }
    m_partial.remove(0, from);
    while (m_partial.size() > MaxLineBytes) {
        const int end = cut(m_partial);
        lines += plain(m_partial.left(end));
        m_partial.remove(0, end);
    }
    return lines;
}

QStringList ScriptOutput::rest() {
    const QByteArray bytes = std::exchange(m_partial, {});
    return bytes.isEmpty() ? QStringList() : QStringList(plain(bytes));
}
