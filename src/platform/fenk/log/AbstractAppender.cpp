#include "fenk/log/AbstractAppender.h"

#include "fenk/log/LogManager.h"

namespace Fenk {

AbstractAppender::AbstractAppender() : m_format(LogManager::logFormat()) {}

AbstractAppender::~AbstractAppender() = default;

void AbstractAppender::setFormat(const QString& format) {
    m_format = LogFormat(format);
}

QString AbstractAppender::format() const {
    return m_format.text();
}

QByteArray AbstractAppender::formatted(const QDateTime& time, QtMsgType type, const char* file, int line,
                                       const char* function, const QString& category,
                                       const QString& message) const {
    return m_format.format(time, type, file, line, function, category, message);
}

}  // namespace Fenk
