#include "bottleservice/files/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "fenk/system/OwnedFd.h"

namespace AtomicFile {

namespace {

const char Suffix[] = ".cellarix-new";
constexpr mode_t NewFileMode = 0666;

bool writeAll(int fd, const QByteArray& content) {
    for (int at = 0; at < content.size();) {
        const ssize_t written = write(fd, content.constData() + at, size_t(content.size() - at));
        if (written < 0 && errno != EINTR)
            return false;
        at += int(qMax<ssize_t>(written, 0));
    }
    return true;
}

bool fill(const QByteArray& path, const QByteArray& target, const QByteArray& content, Safety safety) {
    unlink(path.constData());
    const Fenk::OwnedFd file(open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NewFileMode));
    struct stat old = {};
    if (file.isValid() && stat(target.constData(), &old) == 0)
        fchmod(file.get(), old.st_mode & ~mode_t(S_IFMT));
    // Only what has reached the disk may take the old file's place.
    return file.isValid() && writeAll(file.get(), content) &&
           (safety == Safety::Quick || fsync(file.get()) == 0);
}

}  // namespace

bool replace(const QString& path, const QByteArray& content, QString* error, Safety safety) {
    const QFileInfo info(path);
    if (info.isSymLink() || (info.exists() && !info.isFile())) {
        *error = QString("%1 is a link or no file, and is not written.").arg(path);
        return false;
    }
    const QByteArray target = QFile::encodeName(path);
    const QByteArray beside = QFile::encodeName(info.path() + "/." + info.fileName() + Suffix);
    if (!fill(beside, target, content, safety) || rename(beside.constData(), target.constData()) != 0) {
        *error = QString("Cannot write %1: %2.").arg(path, QString::fromLocal8Bit(strerror(errno)));
        unlink(beside.constData());
        return false;
    }
    if (safety == Safety::Quick)
        return true;
    // A failure here is no failure of the change, which everybody can see by now.
    const Fenk::OwnedFd directory(open(QFile::encodeName(info.path()).constData(), O_RDONLY | O_CLOEXEC));
    if (directory.isValid())
        fsync(directory.get());
    return true;
}

QStringList leftovers(const QString& directory) {
    QStringList paths;
    const QStringList names =
        QDir(directory).entryList({QString(".*") + Suffix}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names)
        paths += directory + '/' + name;
    return paths;
}

}  // namespace AtomicFile
