#include "shell/configuration/page/LiveLog.h"

#include <utility>

#include "backend/InBackground.h"
#include "shell/configuration/rules/DebugLog.h"
#include "widgets/LogLineReader.h"

namespace {

QVector<LiveLogLine> shownOf(const QStringList& lines) {
    QVector<LiveLogLine> shown;
    for (auto line = lines.crbegin(); line != lines.crend() && shown.size() < LiveLog::MaxLines; ++line) {
        const DebugLog::Kind kind = DebugLog::kindOf(*line);
        if (kind != DebugLog::Kind::Dropped)
            shown.append({line->trimmed(), kind == DebugLog::Kind::Error});
    }
    std::reverse(shown.begin(), shown.end());
    return shown;
}

}  // namespace

LiveLog::LiveLog(QObject* parent) : QObject(parent), m_reader(std::make_shared<LogLineReader>()) {
    m_thread.setMaxThreadCount(1);
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
        QStringList lines = reader->add(bytes);
        if (isLast)
            lines += reader->rest();
        return shownOf(lines);
    };
    const auto take = [this, isLast](const QVector<LiveLogLine>& lines) {
        m_isReading = false;
        if (!lines.isEmpty())
            Q_EMIT linesRead(lines);
        if (isLast)
            Q_EMIT ended();
        else
            readNext();
    };
    inBackground(this, read, take, &m_thread);
}
