#include "fenk/log/ConsoleAppender.h"

#include "fenk/log/StandardError.h"

namespace Fenk {

void ConsoleAppender::append(const QDateTime& time, QtMsgType type, const char* file, int line,
                             const char* function, const QString& category, const QString& message) {
    writeToStandardError(formatted(time, type, file, line, function, category, message));
}

}  // namespace Fenk
