#include "fenk/system/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "fenk/system/OwnedFd.h"

namespace Fenk {

bool RegularFile::open(QFile& file, const QString& path, Links links) {
    const int follow = links == Links::Followed ? 0 : O_NOFOLLOW;
    OwnedFd fd(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | follow));
    struct stat facts = {};
    if (!fd.isValid() || ::fstat(fd.get(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return false;
    if (!file.open(fd.get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return false;
    fd.release();
    return true;
}

std::optional<QByteArray> RegularFile::read(const QString& path, qint64 maximum) {
    QFile file;
    if (!open(file, path))
        return std::nullopt;
    return file.read(maximum + 1);
}

}  // namespace Fenk
