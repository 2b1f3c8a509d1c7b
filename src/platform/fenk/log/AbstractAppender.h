#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include "fenk/log/LogFormat.h"

namespace Fenk {

/// A destination of log messages. Owned by Logger, which may call append() from any thread at any time; an
/// appender must not throw and must not log.
class AbstractAppender {
public:
    AbstractAppender();
    virtual ~AbstractAppender();

    AbstractAppender(const AbstractAppender&) = delete;
    AbstractAppender& operator=(const AbstractAppender&) = delete;

    /// See LogFormat for the placeholders. Call before registration. The default is LogManager::logFormat().
    void setFormat(const QString& format);
    QString format() const;

    /// `file` and `function` may be null. `time` is the time of the message; appenders use no other clock.
    virtual void append(const QDateTime& time, QtMsgType type, const char* file, int line,
                        const char* function, const QString& category, const QString& message) = 0;

protected:
    QByteArray formatted(const QDateTime& time, QtMsgType type, const char* file, int line,
                         const char* function, const QString& category, const QString& message) const;

private:
    LogFormat m_format;
};

}  // namespace Fenk
