#include "bottleservice/files/FileTree.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <cerrno>
#include <cstring>

#include "fenk/system/OwnedFd.h"

namespace {

constexpr int BlockBytes = 256 * 1024;
constexpr int StepBytes = 16 * 1024 * 1024;

QString fault(const QString& path) {
    return QString("Cannot copy %1: %2.").arg(path, QString::fromLocal8Bit(strerror(errno)));
}

FileTree::Copied copyBytes(int from, int to, qint64 size, const FileTree::Step& step) {
    if (::ioctl(to, FICLONE, from) == 0)
        return !step || step(size) ? FileTree::Copied::Whole : FileTree::Copied::Stopped;
    for (;;) {
        const ssize_t count = ::sendfile(to, from, nullptr, StepBytes);
        if (count == 0)
            return FileTree::Copied::Whole;
        if (count < 0)
            return errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? FileTree::Copied::Unwritable
                                                                        : FileTree::Copied::Unreadable;
        if (step && !step(count))
            return FileTree::Copied::Stopped;
    }
}

QByteArray linkTarget(const QByteArray& path) {
    QByteArray target(4096, 0);
    const ssize_t length = ::readlink(path.constData(), target.data(), size_t(target.size()));
    return length > 0 && length < target.size() ? target.left(int(length)) : QByteArray();
}

}  // namespace

FileTree::Copied FileTree::copyFile(const QByteArray& from, const QByteArray& to, const Step& step) {
    const Fenk::OwnedFd source(::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!source.isValid() || ::fstat(source.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return Copied::Unreadable;
    const Fenk::OwnedFd target(
        ::open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, (status.st_mode & 0777) | S_IWUSR));
    if (!target.isValid())
        return Copied::Unwritable;
    const Copied result = copyBytes(source.get(), target.get(), status.st_size, step);
    if (result != Copied::Whole)
        return result;
    const struct timespec times[] = {status.st_atim, status.st_mtim};
    ::futimens(target.get(), times);
    return result;
}

bool FileTree::copyFile(const QString& from, const QString& to) {
    return copyFile(QFile::encodeName(from), QFile::encodeName(to)) == Copied::Whole;
}

QString FileTree::copy(const QString& from, const QString& to, const std::atomic_bool& cancelled) {
    QDirIterator walk(from, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        if (cancelled)
            return "The work was cancelled.";
        const QString path = walk.next();
        const QString target = to + path.mid(from.size());
        const QByteArray encoded = QFile::encodeName(target);
        struct stat status = {};
        if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
            return fault(path);
        bool done = true;
        if (S_ISLNK(status.st_mode))
            done = ::symlink(linkTarget(QFile::encodeName(path)).constData(), encoded.constData()) == 0;
        else if (S_ISDIR(status.st_mode))
            done = ::mkdir(encoded.constData(), (status.st_mode & 0777) | S_IRWXU) == 0 || errno == EEXIST;
        else if (S_ISREG(status.st_mode))
            done = copyFile(path, target);
        if (!done)
            return fault(path);
    }
    return {};
}

bool FileTree::sameContent(const QString& one, const QString& other) {
    QFile first(one);
    QFile second(other);
    if (!QFileInfo(one).isFile() || !QFileInfo(other).isFile() || first.size() != second.size() ||
        !first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly))
        return false;
    for (;;) {
        const QByteArray block = first.read(BlockBytes);
        if (block != second.read(BlockBytes))
            return false;
        if (block.isEmpty())
            return first.atEnd() && second.atEnd();
    }
}
