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
    return memmem(line, length, ":trace:", 7) && !memchr(line, '\x1b', length) &&
           !memchr(line, '\r', length - 1);
}

}  // namespace

/// Most bytes of a busy log are traces: they are left out before any text is made of them.
struct LiveLog::Reader {
    QVector<LiveLogLine> read(const QByteArray& bytes, bool isLast) {
        m_rest += bytes;
        const int end = isLast || m_rest.size() > LogLineReader::MaxLineBytes * 8
                            ? m_rest.size()
                            : m_rest.lastIndexOf('\n') + 1;
        QByteArray kept;
        for (int from = 0; from < end;) {
            const char* line = m_rest.constData() + from;
            const auto* stop = static_cast<const char*>(memchr(line, '\n', size_t(end - from)));
            const int length = stop ? int(stop - line) + 1 : end - from;
            if (!stop || !isPlainTrace(line, size_t(length) - 1))
                kept.append(line, length);
            from += length;
        }
        m_rest.remove(0, end);
        QStringList lines = m_lines.add(kept);
        if (isLast)
            lines += m_lines.rest();
        return shownOf(lines);
    }

private:
    QByteArray m_rest;  ///< an incomplete line, while it is short
    LogLineReader m_lines;
};

LiveLog::LiveLog(QObject* parent) : QObject(parent), m_reader(std::make_shared<Reader>()) {
    m_thread.setMaxThreadCount(1);
    connect(&m_delivery, &QTimer::timeout, this, &LiveLog::deliver);
}

LiveLog::~LiveLog() {
    m_thread.waitForDone();
}

void LiveLog::add(const QByteArray& bytes) {
    m_waiting += bytes;
    readNext();
}

void LiveLog::end() {
    m_isAtEnd = true;
    readNext();
}

void LiveLog::readNext() {
    if (m_isReading || (m_waiting.isEmpty() && !m_isAtEnd))
        return;
    m_isReading = true;
    const bool isLast = m_isAtEnd;
    const auto read = [reader = m_reader, bytes = std::exchange(m_waiting, {}), isLast] {
        return reader->read(bytes, isLast);
    };
    const auto take = [this, isLast](const QVector<LiveLogLine>& lines) {
        m_lines = lines;
        m_isLast = isLast;
        m_delivery.start(0);
    };
    inBackground(this, read, take, &m_thread);
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
