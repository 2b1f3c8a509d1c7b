#include "bottleservice/backup/RestoredPrefix.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "bottleservice/backup/BackupPath.h"
#include "bottleservice/bottles/RegistryMerge.h"
#include "bottleservice/files/FileTree.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/WineBuild.h"

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

/// The user's directory gets the name that this machine's Wine gives it. The old name stays as a link, since
/// settings and shortcuts of programs have it.
QString renameUser(const QString& directory, const QString& from, const QString& to) {
    const QByteArray users = QFile::encodeName(directory + '/' + Users);
    const QByteArray old = users + from.toUtf8();
    const QByteArray now = users + to.toUtf8();
    if (from.isEmpty() || to.isEmpty() || from == to || !QFileInfo(QFile::decodeName(old)).isDir() ||
        !targetOf(old).isEmpty())
        return {};
    if (!targetOf(now).isEmpty())
        ::unlink(now.constData());
    if (exists(now)) {
        qInfo() << "the bottle has a user" << to << "already;" << from << "keeps its name";
        return {};
    }
    if (::rename(old.constData(), now.constData()) != 0 ||
        ::symlink(to.toUtf8().constData(), old.constData()) != 0)
        return QString("Cannot rename %1.").arg(QFile::decodeName(old));
    return {};
}

}  // namespace

QString userOf(const QString& prefix) {
    const QStringList users =
        QDir(prefix + '/' + Users).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString& user : users) {
        if (user.compare("Public", Qt::CaseInsensitive) != 0)
            return user;
    }
    return {};
}

QString complete(const BackupList& list, const Place& place, bool* isOtherBuild,
                 const std::atomic_bool& cancelled) {
    const QByteArray root = QFile::encodeName(place.directory) + '/';
    const QByteArray original = QFile::encodeName(place.templatePath) + '/';
    for (const QByteArray& path : list.wineFiles) {
        if (cancelled)
            return "The work was cancelled.";
        if (!take(original + path, root + path))
            return QString("Cannot write %1.").arg(QFile::decodeName(root + path));
    }
    const QString user = userOf(place.templatePath);
    const QByteArray oldFolders = Users + list.user.toUtf8() + '/';
    const QByteArray newFolders = Users + user.toUtf8() + '/';
    for (const QByteArray& path : list.standardLinks) {
        const QByteArray here = path.startsWith(oldFolders) && !list.user.isEmpty()
                                    ? newFolders + path.mid(oldFolders.size())
                                    : path;
        const QByteArray target = targetOf(original + here);
        if (!target.isEmpty() && ::symlink(target.constData(), (root + path).constData()) != 0)
            return QString("Cannot write %1.").arg(QFile::decodeName(root + path));
        // A folder of the user that is a real one here.
        if (target.isEmpty() && path.startsWith(Users))
            ::mkdir((root + path).constData(), 0777);
    }
    QString fault = renameUser(place.directory, list.user, user);
    if (!fault.isEmpty() || list.build.isEmpty())
        return fault;
    *isOtherBuild = WineBuild::checksum(place.wine) != list.build;
    if (!*isOtherBuild)
        return {};
    qInfo() << "the backup was made with another build of Wine; updating" << place.directory;
    fault = SlimPrefix::renew(place.directory, {}, place.templatePath, cancelled);
    return fault.isEmpty() ? RegistryMerge::update(place.directory, place.oldRegistry, place.templatePath)
                           : fault;
}

}  // namespace RestoredPrefix
