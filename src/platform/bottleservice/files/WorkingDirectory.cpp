#include "bottleservice/files/WorkingDirectory.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <cerrno>
#include <cstring>

namespace WorkingDirectory {

const char CreatingPrefix[] = ".creating-";
const char DeletingPrefix[] = ".deleting-";

QString pathBeside(const QString& bottlePath, const char* prefix) {
    return QFileInfo(bottlePath).path() + '/' + prefix + QUuid::createUuid().toString(QUuid::Id128);
}

namespace {

/// rename(), but fails with EEXIST rather than replacing a file.
int moveWithoutReplacing(const char* from, const char* to) {
    const int result = renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
    if (result == 0 || errno != EINVAL)
        return result;
    // The file system does not support this. A directory only takes the place of an empty one.
    struct stat facts = {};
    if (lstat(from, &facts) != 0)
        return -1;
    if (S_ISDIR(facts.st_mode))
        return rename(from, to);
    if (link(from, to) == 0)
        return unlink(from);
    if (errno != EPERM && errno != EOPNOTSUPP)
        return -1;
    if (lstat(to, &facts) == 0)
        errno = EEXIST;
    return errno == ENOENT ? rename(from, to) : -1;
}

}  // namespace

QString moveInto(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (moveWithoutReplacing(source.constData(), target.constData()) == 0)
        return {};
    return QString("Cannot move %1 to %2: %3.").arg(from, to, QString::fromLocal8Bit(strerror(errno)));
}

QString exchange(const QString& from, const QString& to) {
    if (renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD, QFile::encodeName(to).constData(),
                  RENAME_EXCHANGE) == 0)
        return {};
    const QString aside = pathBeside(to, DeletingPrefix);
    QString fault = moveInto(to, aside);
    if (!fault.isEmpty())
        return fault;
    fault = moveInto(from, to);
    moveInto(aside, fault.isEmpty() ? from : to);
    return fault;
}

QStringList leftovers(const QString& root) {
    QStringList paths;
    for (const QString& directory : {root, root + "/public"}) {
        if (QFileInfo(directory).isSymLink() && directory != root)
            continue;
        const QStringList entries =
            QDir(directory).entryList({QString(CreatingPrefix) + '*', QString(DeletingPrefix) + '*'},
                                      QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
        for (const QString& entry : entries)
            paths += directory + '/' + entry;
    }
    return paths;
}

}  // namespace WorkingDirectory
