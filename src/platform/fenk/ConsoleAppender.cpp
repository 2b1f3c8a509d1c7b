#include "fenk/ConsoleAppender.h"

#include <unistd.h>

namespace Fenk {

void ConsoleAppender::append(const QDateTime& time, QtMsgType type, const char* file, int line,
                             const char* function, const QString& category, const QString& message) {
    const QByteArray text = formatted(time, type, file, line, function, category, message);
    // Nobody may be reading; there is no place to complain about that.
    const ssize_t written = ::write(STDERR_FILENO, text.constData(), size_t(text.size()));
    (void)written;
}

}  // namespace Fenk
