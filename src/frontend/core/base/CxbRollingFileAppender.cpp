#include "core/base/CxbRollingFileAppender.h"

#include "core/base/Logging.h"

CxbRollingFileAppender::~CxbRollingFileAppender() = default;

void CxbRollingFileAppender::append(const QDateTime& time, QtMsgType type, const char* file, int line,
                                    const char* function, const QString& category, const QString& message) {
    RollingFileAppender::append(time, type, file, line, function, category, cleanHomePaths(message));
}
