#include "bottleservice/files/DataDirLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace {

constexpr int RetryMs = 50;

/// Waiting processes hold a shared lock on one byte of the file.
struct flock waitersLock(short type) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_len = 1;
    return lock;
}

}  // namespace

DataDirLock::DataDirLock(const QString& dataDir) {
    QDir().mkpath(dataDir);
    m_fd = Fenk::OwnedFd(open(QFile::encodeName(dataDir + "/.service-lock").constData(),
                              O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

bool DataDirLock::acquire(int timeoutMs) {
    QElapsedTimer elapsed;
    elapsed.start();
    bool isHeld = m_fd.isValid() && flock(m_fd.get(), LOCK_EX | LOCK_NB) == 0;
    if (!m_fd.isValid() || isHeld || timeoutMs <= 0)
        return isHeld;
    struct flock waiting = waitersLock(F_RDLCK);
    fcntl(m_fd.get(), F_OFD_SETLK, &waiting);
    while (!isHeld && elapsed.elapsed() < timeoutMs) {
        QThread::msleep(RetryMs);
        isHeld = flock(m_fd.get(), LOCK_EX | LOCK_NB) == 0;
    }
    waiting = waitersLock(F_UNLCK);
    fcntl(m_fd.get(), F_OFD_SETLK, &waiting);
    return isHeld;
}

bool DataDirLock::isWanted() const {
    struct flock lock = waitersLock(F_WRLCK);
    return m_fd.isValid() && fcntl(m_fd.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}
