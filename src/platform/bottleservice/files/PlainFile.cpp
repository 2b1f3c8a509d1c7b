#include "bottleservice/files/PlainFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

std::optional<QByteArray> PlainFile::read(const QString& path, qint64 maximum) {
    const int fd =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    QFile file;
    if (fd < 0 || !file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return std::nullopt;
    struct stat status = {};
    if (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return file.read(maximum + 1);
}
