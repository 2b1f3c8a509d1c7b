#include "bottleservice/files/TreeRemover.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

// Every level of the walk needs a descriptor; directories below the limit are moved up to the root and
// removed from there.
constexpr int MaximumDepth = 64;

struct Removal {
    int rootFd = -1;
    int moved = 0;
    QString firstError;
    const std::atomic_bool* stop = nullptr;

    bool isStopped() const { return stop && *stop; }
    void fail(const std::string& name, int code) {
        if (firstError.isEmpty())
            firstError = QString("%1: %2").arg(QFile::decodeName(name.c_str()),
                                               QString::fromLocal8Bit(strerror(code)));
    }
};

std::vector<std::string> entriesOf(DIR* directory) {
    std::vector<std::string> names;
    while (const dirent* entry = readdir(directory)) {
        if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0)
            names.emplace_back(entry->d_name);
    }
    return names;
}

// A directory without permissions must not prevent its removal.
Directory openDirectory(int parent, const char* name) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    int fd = openat(parent, name, flags);
    if (fd < 0 && errno == EACCES) {
        const int path = openat(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (path >= 0) {
            chmod(("/proc/self/fd/" + std::to_string(path)).c_str(), S_IRWXU);
            close(path);
        }
        fd = openat(parent, name, flags);
    }
    if (fd < 0)
        return nullptr;
    fchmod(fd, S_IRWXU);
    Directory directory(fdopendir(fd));
    if (!directory)
        close(fd);
    return directory;
}

// The type of the name itself, not of its target. A mount point counts even when it shows a directory of the
// same device.
struct Status {
    bool known = false;
    bool isDirectory = false;
    bool isMountPoint = false;
};

bool isOnOtherDevice(int parent, const struct statx& status) {
    struct stat above = {};
    return fstat(parent, &above) != 0 || above.st_dev != makedev(status.stx_dev_major, status.stx_dev_minor);
}

Status statusOf(int parent, const char* name) {
    struct statx status = {};
    if (statx(parent, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &status) != 0)
        return {};
    const bool tellsMounts = (status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
    const bool isMountPoint = tellsMounts ? (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0
                                          : S_ISDIR(status.stx_mode) && isOnOtherDevice(parent, status);
    return {true, S_ISDIR(status.stx_mode), isMountPoint};
}

void removeContents(Removal& removal, DIR* directory, int depth);

void moveUp(Removal& removal, int parent, const std::string& name) {
    for (int number = removal.moved;; ++number) {
        const std::string target = ".moved-" + std::to_string(number);
        if (renameat2(parent, name.c_str(), removal.rootFd, target.c_str(), RENAME_NOREPLACE) == 0) {
            ++removal.moved;
            return;
        }
        if (errno != EEXIST) {
            removal.fail(name, errno);
            return;
        }
    }
}

void removeDirectory(Removal& removal, int parent, const std::string& name, int depth) {
    if (depth > MaximumDepth) {
        moveUp(removal, parent, name);
        return;
    }
    const Directory directory = openDirectory(parent, name.c_str());
    if (!directory) {
        removal.fail(name, errno);
        return;
    }
    removeContents(removal, directory.get(), depth);
    if (unlinkat(parent, name.c_str(), AT_REMOVEDIR) != 0)
        removal.fail(name, errno);
}

void removeContents(Removal& removal, DIR* directory, int depth) {
    const int fd = dirfd(directory);
    for (const std::string& name : entriesOf(directory)) {
        if (removal.isStopped())
            return;
        const Status status = statusOf(fd, name.c_str());
        if (!status.known)
            removal.fail(name, errno);
        else if (status.isMountPoint)
            removal.fail(name, EBUSY);
        else if (status.isDirectory)
            removeDirectory(removal, fd, name, depth + 1);
        else if (unlinkat(fd, name.c_str(), 0) != 0)
            removal.fail(name, errno);
    }
}

}  // namespace

namespace TreeRemover {

bool remove(const QString& path, QString* error, const std::atomic_bool* stop) {
    const QFileInfo info(path);
    const Directory parent(opendir(QFile::encodeName(info.absolutePath()).constData()));
    const QByteArray name = QFile::encodeName(info.fileName());
    const Status status = parent ? statusOf(dirfd(parent.get()), name.constData()) : Status();
    if (!status.known) {
        const int fault = errno;
        *error = QString("%1: %2").arg(path, QString::fromLocal8Bit(strerror(fault)));
        return fault == ENOENT;
    }
    if (!status.isDirectory || status.isMountPoint) {
        *error = QString("%1 is a link, a file or a mount point.").arg(path);
        return false;
    }
    Removal removal;
    removal.stop = stop;
    const Directory root = openDirectory(dirfd(parent.get()), name.constData());
    if (!root) {
        *error = QString("%1: %2").arg(path, QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    removal.rootFd = dirfd(root.get());
    int movedBefore = 0;
    do {
        // Each further round removes only what the previous one has moved up.
        movedBefore = removal.moved;
        removal.firstError.clear();
        rewinddir(root.get());
        removeContents(removal, root.get(), 0);
    } while (removal.moved > movedBefore && !removal.isStopped());
    if (unlinkat(dirfd(parent.get()), name.constData(), AT_REMOVEDIR) != 0)
        removal.fail(name.toStdString(), errno);
    *error = removal.firstError;
    return error->isEmpty();
}

}  // namespace TreeRemover
