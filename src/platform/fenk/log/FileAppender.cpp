#include "fenk/log/FileAppender.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>

#include "fenk/log/StandardError.h"

namespace Fenk {

FileAppender::FileAppender(const QString& fileName) : m_fileName(fileName) {}

FileAppender::~FileAppender() {
    closeFile();
}

void FileAppender::append(const QDateTime& time, QtMsgType type, const char* file, int line,
                          const char* function, const QString& category, const QString& message) {
    const QByteArray text = formatted(time, type, file, line, function, category, message);
    const std::lock_guard<std::mutex> lock(m_mutex);
    prepare(time);
    if (openFile(time) && writeLine(text))
        m_noticed = false;
}

void FileAppender::prepare(const QDateTime&) {}

void FileAppender::closeFile() {
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    m_torn = false;
}

bool FileAppender::openFile(const QDateTime& time) {
    struct stat status = {};
    if (m_fd >= 0 && ::fstat(m_fd, &status) == 0 && status.st_nlink > 0)
        return true;
    closeFile();
    // The second comparison handles clocks that are set back.
    if (m_retryAt.isValid() && time < m_retryAt && time.secsTo(m_retryAt) <= RetrySeconds)
        return false;
    QDir().mkpath(QFileInfo(m_fileName).path());
    m_fd = ::open(QFile::encodeName(m_fileName).constData(),
                  O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
    if (m_fd >= 0) {
        m_retryAt = QDateTime();
        return true;
    }
    notice(QStringLiteral("cannot open the log file %1: %2").arg(m_fileName, qt_error_string(errno)));
    m_retryAt = time.addSecs(RetrySeconds);
    return false;
}

bool FileAppender::writeLine(const QByteArray& line) {
    const QByteArray bytes = m_torn ? '\n' + line : line;
    ssize_t written = 0;
    do {
        written = ::write(m_fd, bytes.constData(), size_t(bytes.size()));
    } while (written < 0 && errno == EINTR);
    if (written == bytes.size()) {
        m_torn = false;
        return true;
    }
    const int reason = written < 0 ? errno : ENOSPC;
    m_torn = m_torn || written > 0;
    notice(QStringLiteral("cannot write the log file %1: %2").arg(m_fileName, qt_error_string(reason)));
    return false;
}

void FileAppender::notice(const QString& text) {
    if (m_noticed)
        return;
    m_noticed = true;
    writeToStandardError(text.toUtf8() + '\n');
}

}  // namespace Fenk
