#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

#include "fenk/log/LogFormat.h"

namespace Fenk {

/// One place that log messages go to. Appenders are registered with Logger, which owns them and may call
/// append from any thread at any time; an appender must not fail loudly and must not log by itself.
class AbstractAppender {
public:
    AbstractAppender();
    virtual ~AbstractAppender();

    AbstractAppender(const AbstractAppender&) = delete;
    AbstractAppender& operator=(const AbstractAppender&) = delete;

    /// See LogFormat for the placeholders. To be set before registration. The default is LogManager's format.
    void setFormat(const QString& format);
    QString format() const;

    /// file, function may be null. time is the message's own; whoever needs a clock takes this one.
    virtual void append(const QDateTime& time, QtMsgType type, const char* file, int line,
                        const char* function, const QString& category, const QString& message) = 0;

protected:
    QByteArray formatted(const QDateTime& time, QtMsgType type, const char* file, int line,
                         const char* function, const QString& category, const QString& message) const;

private:
    LogFormat m_format;
};

}  // namespace Fenk
