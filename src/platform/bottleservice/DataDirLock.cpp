#include "bottleservice/DataDirLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace {

constexpr int RetryMs = 50;

}  // namespace

DataDirLock::DataDirLock(const QString& dataDir) {
    QDir().mkpath(dataDir);
    m_fd = open(QFile::encodeName(dataDir + "/.service-lock").constData(),
                O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

DataDirLock::~DataDirLock() {
    if (m_fd >= 0)
        close(m_fd);
}

bool DataDirLock::acquire(int timeoutMs) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_fd >= 0) {
        if (flock(m_fd, LOCK_EX | LOCK_NB) == 0)
            return true;
        if (elapsed.elapsed() >= timeoutMs)
            return false;
        QThread::msleep(RetryMs);
    }
    return false;
}
