#include "storeserver/reports/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <cerrno>

#include "fenk/system/OwnedFd.h"

namespace StoreServer {

namespace {

int writeAll(int file, const QByteArray& content) {
    for (qint64 done = 0; done < content.size();) {
        const ssize_t count = ::write(file, content.constData() + done, size_t(content.size() - done));
        if (count < 0 && errno != EINTR)
            return errno;
        done += std::max<ssize_t>(count, 0);
    }
    return ::fdatasync(file) == 0 ? 0 : errno;
}

}  // namespace

namespace PrivateFile {

int makeDirectory(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), 0700) == 0)
        return 0;
    const int error = errno;
    struct stat facts = {};
    const bool isThere = error == EEXIST && ::stat(name.constData(), &facts) == 0 && S_ISDIR(facts.st_mode);
    return isThere ? 0 : error;
}

int write(const QString& path, const QByteArray& content) {
    const Fenk::OwnedFd file(::open(QFile::encodeName(path).constData(),
                                    O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isValid())
        return errno;
    const int error = writeAll(file.get(), content);
    if (error != 0)
        QFile::remove(path);
    return error;
}

int syncDirectory(const QString& path) {
    const Fenk::OwnedFd directory(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isValid() && ::fsync(directory.get()) == 0)
        return 0;
    // Some file systems cannot do that for a directory.
    return errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

int addName(const QString& from, const QString& to, qint64* copiedBytes) {
    *copiedBytes = 0;
    if (::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return 0;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != EMLINK)
        return errno;
    if (!QFile::copy(from, to))
        return EIO;
    *copiedBytes = QFile(to).size();
    return 0;
}

}  // namespace PrivateFile

}  // namespace StoreServer
