#include "shell/configuration/page/LiveLog.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "backend/InBackground.h"
#include "shell/configuration/rules/DebugLog.h"
#include "widgets/LogLineReader.h"

namespace {

constexpr int LinesAtOnce = 1000;

QVector<LiveLogLine> shownOf(const QStringList& lines) {
    QVector<LiveLogLine> shown;
    auto line = lines.crbegin();
    for (; line != lines.crend() && shown.size() < DebugLog::MaxLines; ++line) {
        const DebugLog::Kind kind = DebugLog::kindOf(*line);
        if (kind != DebugLog::Kind::Dropped)
            shown.append({line->trimmed(), kind == DebugLog::Kind::Error});
    }
    std::reverse(shown.begin(), shown.end());
    if (line != lines.crend())
        shown.first().skipped = int(lines.crend() - line);
    return shown;
}

/// Whether the line is dropped whatever the reader makes of it: nothing in it is removed first.
bool isPlainTrace(const char* line, size_t length) {
    while (length > 0 && (line[length - 1] == '\n' || line[length - 1] == '\r'))
        --length;
    return memmem(line, length, ":trace:", 7) && !memchr(line, '\x1b', length) && !memchr(line, '\r', length);
}

}  // namespace

/// Most bytes of a busy log are traces: they are left out before any text is made of them.
class LiveLog::Reader {
public:
    QVector<LiveLogLine> read(const Batch& batch) {
        if (batch.skipped > 0)
            forget();
        m_rest += batch.bytes;
        const int end = batch.isLast ? m_rest.size() : m_rest.lastIndexOf('\n') + 1;
        QByteArray kept = untraced(end);
        m_rest.remove(0, end);
        if (m_rest.size() > LongestLine)
            kept += beginOfLongLine();
        QStringList lines = m_lines.add(kept);
        if (batch.isLast)
            lines += m_lines.rest();
        QVector<LiveLogLine> shown = shownOf(lines);
        m_skipped += batch.skipped;
        if (!shown.isEmpty())
            shown.first().skipped += std::exchange(m_skipped, 0);
        return shown;
    }

private:
    /// Of a line that is handed over before its end is known.
    enum class LongLine { None, Shown, Dropped };

    static constexpr int LongestLine = LogLineReader::MaxLineBytes * 8;

    /// The line that is incomplete has lost its end.
    void forget() {
        m_rest.clear();
        m_lines.rest();
        m_longLine = LongLine::None;
    }

    QByteArray untraced(int end) {
        QByteArray kept;
        for (int from = 0; from < end;) {
            const char* line = m_rest.constData() + from;
            const auto* stop = static_cast<const char*>(memchr(line, '\n', size_t(end - from)));
            const int length = stop ? int(stop - line) + 1 : end - from;
            const bool isTrace = m_longLine == LongLine::None && isPlainTrace(line, size_t(length));
            if (m_longLine != LongLine::Dropped && !isTrace)
                kept.append(line, length);
            m_longLine = LongLine::None;
            from += length;
        }
        return kept;
    }

    QByteArray beginOfLongLine() {
        const QByteArray begin = std::exchange(m_rest, {});
        if (m_longLine == LongLine::None)
            m_longLine =
                isPlainTrace(begin.constData(), size_t(begin.size())) ? LongLine::Dropped : LongLine::Shown;
        return m_longLine == LongLine::Shown ? begin : QByteArray();
    }

    QByteArray m_rest;  ///< an incomplete line, while it is short
    LongLine m_longLine = LongLine::None;
    LogLineReader m_lines;
    int m_skipped = 0;  ///< lines, to be told with the next one
};

LiveLog::LiveLog(QObject* parent) : QObject(parent), m_reader(std::make_shared<Reader>()) {
    connect(&m_delivery, &QTimer::timeout, this, &LiveLog::deliver);
}

void LiveLog::add(const QByteArray& bytes) {
    m_waiting.bytes += bytes;
    if (m_waiting.bytes.size() > MaxWaitingBytes)
        dropOldest();
    readNext();
}

/// Half of what waits, so that the next bytes do not drop again.
void LiveLog::dropOldest() {
    QByteArray& bytes = m_waiting.bytes;
    const int lineEnd = bytes.indexOf('\n', bytes.size() - MaxWaitingBytes / 2);
    const int end = lineEnd < 0 ? bytes.size() : lineEnd + 1;
    m_waiting.skipped += std::max(1, int(std::count(bytes.constData(), bytes.constData() + end, '\n')));
    bytes.remove(0, end);
}

void LiveLog::end() {
    m_waiting.isLast = true;
    readNext();
}

void LiveLog::readNext() {
    if (m_isReading || (m_waiting.bytes.isEmpty() && !m_waiting.isLast))
        return;
    m_isReading = true;
    const Batch batch = std::exchange(m_waiting, {});
    const auto read = [reader = m_reader, batch] { return reader->read(batch); };
    const auto take = [this, isLast = batch.isLast](const QVector<LiveLogLine>& lines) {
        m_lines = lines;
        m_isLast = isLast;
        m_delivery.start(0);
    };
    inBackground(this, read, take, m_thread.pool());
}

void LiveLog::deliver() {
    const QVector<LiveLogLine> lines = m_lines.mid(m_delivered, LinesAtOnce);
    m_delivered += lines.size();
    if (!lines.isEmpty())
        Q_EMIT linesRead(lines);
    if (m_delivered < m_lines.size())
        return;
    m_delivery.stop();
    m_lines.clear();
    m_delivered = 0;
    m_isReading = false;
    if (m_isLast)
        Q_EMIT ended();
    else
        readNext();
}
