#pragma once

#include <QString>
#include <QtGlobal>
#include <memory>
#include <shared_mutex>
#include <vector>

namespace Fenk {

class AbstractAppender;

/// Installs itself as Qt's message handler with the first appender, restores the previous handler with the
/// last, and passes each message to all appenders, in the thread that logs. Never destroyed, so messages of
/// late destructors still arrive. A fatal message ends the process after it has been appended, as usual with
/// Qt.
class Logger {
public:
    static Logger* globalInstance();

    void registerAppender(AbstractAppender* appender);  ///< takes ownership
    void registerAppender(std::unique_ptr<AbstractAppender> appender);
    void removeAppender(AbstractAppender* appender);  ///< destroys it

private:
    Logger() = default;
    ~Logger() = default;

    static void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message);
    void append(QtMsgType type, const QMessageLogContext& context, const QString& message);

    std::shared_mutex m_lock;
    QtMessageHandler m_previous = nullptr;
    std::vector<std::unique_ptr<AbstractAppender>> m_appenders;
};

}  // namespace Fenk
