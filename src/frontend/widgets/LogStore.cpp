#include "widgets/LogStore.h"

#include <algorithm>

namespace {

constexpr int CertainErrorLevel = 0;
constexpr int ErrorLevel = 1;
constexpr int NotKnown = -1;
constexpr int ChannelWithin = 40;  ///< bytes; time, process and thread stand before the channel's class
constexpr int MaxUtf8Bytes = 4;    ///< of one character

/// Messages of Wine that are not errors, though they come on the stream of errors.
bool isRemark(const QByteArray& line) {
    const QByteArray begin = line.left(ChannelWithin);
    return begin.contains(":fixme:") || begin.contains(":warn:") || begin.contains(":trace:");
}

bool endsLine(QChar c) {
    return c == '\n' || c == '\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

void cutToLimit(QByteArray* line) {
    if (line->size() <= LogStore::MaxLineBytes)
        return;
    int end = LogStore::MaxLineBytes;
    while (end > LogStore::MaxLineBytes - MaxUtf8Bytes && (line->at(end) & 0xc0) == 0x80)
        --end;  // between two characters
    line->truncate(end);
    line->append("...");
}

QString timeText(int milliseconds) {
    if (milliseconds == NotKnown)
        return {};
    return QTime::fromMSecsSinceStartOfDay(milliseconds).toString("HH:mm:ss");
}

}  // namespace

void LogStore::append(const QString& text, int level, const QTime& time) {
    const int now = time.isValid() ? time.msecsSinceStartOfDay() : NotKnown;
    if (std::none_of(text.begin(), text.end(), endsLine)) {
        appendLine(text.toUtf8(), now, level);
        return;
    }
    int begin = 0;
    for (int end = 0; end <= text.size(); ++end) {
        if (end < text.size() && !endsLine(text[end]))
            continue;
        appendLine(text.mid(begin, end - begin).toUtf8(), now, level);
        if (text.midRef(end, 2) == QLatin1String("\r\n"))
            ++end;
        begin = end + 1;
    }
}

void LogStore::appendLine(QByteArray text, int time, int level) {
    cutToLimit(&text);
    text.squeeze();  // toUtf8() reserves three bytes a character
    m_lines.push_back({text, time, level});
    m_bytes += bytesOf(m_lines.back());
    while (lineCount() > m_maxLines || m_bytes > MaxBytes) {
        m_bytes -= bytesOf(m_lines.front());
        m_lines.pop_front();
        ++m_dropped;
    }
}

bool LogStore::isError(int line) const {
    const Line& it = m_lines[size_t(line)];
    return it.level == CertainErrorLevel || (it.level == ErrorLevel && !isRemark(it.text));
}

QString LogStore::timeOf(int line) const {
    return timeText(m_lines[size_t(line)].time);
}

QStringList LogStore::lastLines(int count) const {
    QStringList result;
    for (int line = std::max(0, lineCount() - count); line < lineCount(); ++line)
        result.append(text(line));
    return result;
}

QString LogStore::longestLine() const {
    const auto longest = std::max_element(
        m_lines.begin(), m_lines.end(),
        [](const Line& one, const Line& other) { return one.text.size() < other.text.size(); });
    return longest == m_lines.end() ? QString() : QString::fromUtf8(longest->text);
}

QByteArray LogStore::allLines() const {
    QByteArray result;
    result.reserve(int(m_bytes));
    int second = NotKnown;
    QByteArray time;
    for (const Line& line : m_lines) {
        const int ofLine = line.time == NotKnown ? NotKnown : line.time / 1000;
        if (ofLine != second) {  // making the text of a time takes longer than all the rest
            second = ofLine;
            time = line.time == NotKnown ? QByteArray() : timeText(line.time).toUtf8() + ' ';
        }
        result += time + line.text + '\n';
    }
    return result;
}
