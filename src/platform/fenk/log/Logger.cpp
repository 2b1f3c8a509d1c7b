#include "fenk/log/Logger.h"

#include <QDateTime>
#include <algorithm>

#include "fenk/log/AbstractAppender.h"

namespace Fenk {
namespace {

/// Prevents endless recursion if an appender logs.
thread_local bool appending = false;

}  // namespace

Logger* Logger::globalInstance() {
    static Logger* const logger = new Logger;  // never destroyed, see the header
    return logger;
}

void Logger::registerAppender(AbstractAppender* appender) {
    registerAppender(std::unique_ptr<AbstractAppender>(appender));
}

void Logger::registerAppender(std::unique_ptr<AbstractAppender> appender) {
    if (!appender)
        return;
    const std::lock_guard<std::shared_mutex> lock(m_lock);
    if (m_appenders.empty())
        m_previous = qInstallMessageHandler(&Logger::handleMessage);
    m_appenders.push_back(std::move(appender));
}

void Logger::removeAppender(AbstractAppender* appender) {
    const std::lock_guard<std::shared_mutex> lock(m_lock);
    const auto is = [appender](const std::unique_ptr<AbstractAppender>& item) {
        return item.get() == appender;
    };
    const auto removed = std::remove_if(m_appenders.begin(), m_appenders.end(), is);
    if (removed == m_appenders.end())
        return;
    m_appenders.erase(removed, m_appenders.end());
    if (m_appenders.empty())
        qInstallMessageHandler(m_previous);
}

void Logger::handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (appending)
        return;
    appending = true;
    globalInstance()->append(type, context, message);
    appending = false;
}

void Logger::append(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QDateTime now = QDateTime::currentDateTime();
    const QString category = QString::fromUtf8(context.category);
    const std::shared_lock<std::shared_mutex> lock(m_lock);
    for (const auto& appender : m_appenders)
        appender->append(now, type, context.file, context.line, context.function, category, message);
}

}  // namespace Fenk
