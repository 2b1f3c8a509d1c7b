#include "bottleservice/backup/RestoredPrefix.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "bottleservice/bottles/RegistryMerge.h"
#include "bottleservice/files/FileTree.h"
#include "bottleservice/wine/PrefixBuilder.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/WineBuild.h"
#include "fenk/system/OwnedFd.h"

namespace RestoredPrefix {

namespace {

const char Users[] = "drive_c/users/";

QByteArray targetOf(const QByteArray& path) {
    QByteArray target(4096, 0);
    const ssize_t length = ::readlink(path.constData(), target.data(), size_t(target.size()));
    return target.left(int(std::max<ssize_t>(length, 0)));
}

bool exists(const QByteArray& path) {
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0;
}

/// The same link or file as in the template. Nothing happens where that has none.
bool take(const QByteArray& original, const QByteArray& path) {
    const QByteArray target = targetOf(original);
    if (!target.isEmpty())
        return ::symlink(target.constData(), path.constData()) == 0;
    return !exists(original) || FileTree::copyFile(QFile::decodeName(original), QFile::decodeName(path));
}

Reason cannotWrite(const QByteArray& path) {
    return Reason(Reason::CannotWrite, {QFile::decodeName(path), QString::fromLocal8Bit(strerror(errno))});
}

Reason notUpdated(const QString& fault) {
    return fault.isEmpty() ? Reason() : Reason(Reason::NotUpdated, {fault});
}

bool isListedDirectory(const BackupList& list, const QByteArray& path) {
    return std::any_of(list.entries.begin(), list.entries.end(), [&path](const BackupEntry& entry) {
        return entry.type == BackupEntry::Type::Directory && entry.path == path;
    });
}

Fenk::OwnedFd openDirectory(int parent, const char* name) {
    return Fenk::OwnedFd(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// The user's directory gets the name that this machine's Wine gives it. The old name stays as a link, since
/// settings and shortcuts of programs have it. Follows no link. Tells by `isDone` whether it has the name.
Reason renameUser(const BackupList& list, const QString& directory, const QByteArray& to, bool* isDone) {
    const QByteArray from = list.user.toUtf8();
    if (from.isEmpty() || to.isEmpty() || from == to || !isListedDirectory(list, Users + from))
        return {};
    const Fenk::OwnedFd root = openDirectory(AT_FDCWD, QFile::encodeName(directory).constData());
    const Fenk::OwnedFd drive = openDirectory(root.get(), "drive_c");
    const Fenk::OwnedFd users = openDirectory(drive.get(), "users");
    struct stat status = {};
    if (::fstatat(users.get(), to.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
        // A link of an earlier renaming may go. Other links have been judged with the one that is there.
        if (targetOf(QFile::encodeName(directory) + '/' + Users + to) != from) {
            qInfo() << "the bottle has a user" << to << "already;" << from << "keeps its name";
            return {};
        }
        ::unlinkat(users.get(), to.constData(), 0);
    }
    if (!users.isValid() || ::renameat(users.get(), from.constData(), users.get(), to.constData()) != 0 ||
        ::symlinkat(to.constData(), users.get(), from.constData()) != 0)
        return cannotWrite(QFile::encodeName(directory) + '/' + Users + from);
    *isDone = true;
    return {};
}

}  // namespace

QString userOf(const QString& prefix, const QString& preferred) {
    const QStringList users =
        QDir(prefix + '/' + Users).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    // Wine names the directory as the machine names the user.
    for (const QString& user : {preferred, QFileInfo("/proc/self").owner()}) {
        if (!user.isEmpty() && users.contains(user))
            return user;
    }
    for (const QString& user : users) {
        if (user.compare("Public", Qt::CaseInsensitive) != 0)
            return user;
    }
    return {};
}

Reason complete(const BackupList& list, const Place& place, bool* isOtherBuild,
                const std::atomic_bool& cancelled) {
    const QByteArray root = QFile::encodeName(place.directory) + '/';
    const QByteArray original = QFile::encodeName(place.templatePath) + '/';
    for (const QByteArray& path : list.wineFiles) {
        if (cancelled)
            return Reason::Cancelled;
        if (!take(original + path, root + path))
            return cannotWrite(root + path);
    }
    const QByteArray user = userOf(place.templatePath).toUtf8();
    // Before there are links that lead out of the bottle.
    bool isRenamed = false;
    Reason fault = renameUser(list, place.directory, user, &isRenamed);
    if (!fault.isEmpty())
        return fault;
    const QByteArray oldFolders = Users + list.user.toUtf8() + '/';
    const QByteArray newFolders = Users + user + '/';
    for (const QByteArray& listed : list.standardLinks) {
        const QByteArray here = listed.startsWith(oldFolders) && !list.user.isEmpty()
                                    ? newFolders + listed.mid(oldFolders.size())
                                    : listed;
        const QByteArray path = root + (isRenamed ? here : listed);
        const QByteArray target = targetOf(original + here);
        if (!target.isEmpty() && ::symlink(target.constData(), path.constData()) != 0)
            return cannotWrite(path);
        // A folder of the user that is a real one here.
        if (target.isEmpty() && listed.startsWith(Users))
            ::mkdir(path.constData(), 0777);
    }
    *isOtherBuild = !list.build.isEmpty() && WineBuild::checksum(place.wine) != list.build;
    if (*isOtherBuild) {
        qInfo() << "the backup was made with another build of Wine; updating" << place.directory;
        fault = notUpdated(SlimPrefix::renew(place.directory, {}, place.templatePath, cancelled));
        if (fault.isEmpty())
            fault = notUpdated(RegistryMerge::update(place.directory, place.oldRegistry, place.templatePath));
    }
    const QString missing = PrefixBuilder::missingPart(place.directory);
    if (fault.isEmpty() && !missing.isEmpty())
        fault = Reason(Reason::BackupIncomplete, {missing});
    return fault;
}

}  // namespace RestoredPrefix
