#include "support/LogCapture.h"

#include <algorithm>

#include <QMutexLocker>
#include <atomic>

namespace TestSupport {

namespace {
std::atomic<LogCapture*> s_current{nullptr};
}

LogCapture::LogCapture() {
    Q_ASSERT(!s_current);
    s_current = this;
    m_previous = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture() {
    qInstallMessageHandler(m_previous);
    s_current = nullptr;
}

QVector<LogCapture::Line> LogCapture::lines() const {
    const QMutexLocker lock(&m_mutex);
    return m_lines;
}

int LogCapture::count(const QString& text) const {
    int found = 0;
    for (const Line& line : lines())
        found += line.text.contains(text) ? 1 : 0;
    return found;
}

bool LogCapture::contains(QtMsgType type, const QString& text) const {
    const QVector<Line> all = lines();
    return std::any_of(all.begin(), all.end(),
                       [&](const Line& line) { return line.type == type && line.text.contains(text); });
}

QString LogCapture::text() const {
    QString all;
    for (const Line& line : lines())
        all += line.text + "\n";
    return all;
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    LogCapture* const current = s_current;
    if (!current)
        return;
    {
        const QMutexLocker lock(&current->m_mutex);
        current->m_lines.append({type, message});
    }
    // A fatal message must still end the program, and failed checks must still be printed.
    if (type == QtFatalMsg && current->m_previous)
        current->m_previous(type, context, message);
}

}  // namespace TestSupport
