#include "core/base/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "fenk/system/OwnedFd.h"

bool RegularFile::open(QFile& file, const QString& path, Links links) {
    const int follow = links == Links::Followed ? 0 : O_NOFOLLOW;
    Fenk::OwnedFd fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | follow));
    struct stat facts;
    if (!fd.isValid() || ::fstat(fd.get(), &facts) != 0 || !S_ISREG(facts.st_mode))
        return false;
    return file.open(fd.release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}
