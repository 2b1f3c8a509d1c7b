#include "bottleservice/bottles/PackageOrigin.h"

#include <sys/stat.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/files/FileTree.h"
#include "bottleservice/files/TreeRemover.h"
#include "fenk/system/RegularFile.h"

namespace PackageOrigin {

namespace {

const char Mark[] = "/.package";
const char ForgottenMark[] = "/.package-removed";
const char SecondBottle[] = ".package";  // ends the name of a bottle that could not have the package's name
const char UnfinishedCopy[] = "/.kept.cellarix-new";
constexpr int Format = 1;
constexpr qint64 MaximumBytes = 64 * 1024;

/// Such a name leads into no other directory.
bool isPackageName(const QString& name) {
    static const QRegularExpression pattern("\\A[a-z0-9]+(\\.[a-z0-9]+)*\\z");
    return pattern.match(name).hasMatch();
}

QString packageOf(const QString& directory) {
    const QString path = directory + Mark + "/origin.json";
    const QByteArray text = Fenk::RegularFile::read(path, MaximumBytes).value_or(QByteArray());
    const QJsonObject origin =
        text.size() > MaximumBytes ? QJsonObject() : QJsonDocument::fromJson(text).object();
    QString name = origin["package"].toString();
    const QFileInfo file(path);
    if (!file.exists() && !file.isSymLink() && QFileInfo(directory + Mark + "/version").isFile()) {
        name = QFileInfo(directory).fileName();  // made before there were origins
        if (name.endsWith(SecondBottle))
            name.chop(int(sizeof(SecondBottle)) - 1);
    } else if (origin["format"].toInt() != Format) {
        return {};
    }
    return isPackageName(name) ? name : QString();
}

Facts::Package placeOf(const QString& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) == 0)
        return Facts::Package::Present;
    return errno == ENOENT || errno == ENOTDIR ? Facts::Package::Missing : Facts::Package::Unreadable;
}

Reason cannotWrite(const QString& path, int error) {
    return Reason(Reason::CannotWrite, {path, QString::fromLocal8Bit(strerror(error))});
}

}  // namespace

State stateOf(const Facts& facts) {
    if (!facts.isMarked)
        return State::Own;
    if (facts.package.isEmpty() || facts.place == Facts::Package::Unreadable)
        return State::Unknown;
    return facts.place == Facts::Package::Present ? State::Installed : State::Removed;
}

Facts look(const QString& directory, const QString& packages) {
    Facts facts;
    const QFileInfo mark(directory + Mark);
    facts.isMarked = mark.isDir() && !mark.isSymLink();
    if (facts.isMarked)
        facts.package = packageOf(directory);
    if (!facts.package.isEmpty())
        facts.place = placeOf(packages + '/' + facts.package + "/files/package.json");
    return facts;
}

QString sharedFiles(const QString& directory, const QString& packages) {
    const Facts facts = look(directory, packages);
    return stateOf(facts) == State::Installed ? packages + '/' + facts.package + "/files/bottle" : QString();
}

QStringList lostPrograms(const QString& directory, const QJsonObject& programs) {
    QStringList lost;
    for (auto it = programs.begin(); it != programs.end(); ++it) {
        const QString path = it.value().toObject()["path"].toString();
        const bool isFile = path.startsWith('/') || WindowsPath::isWindowsPath(path);  // or found by Wine
        if (isFile && !QFileInfo::exists(WindowsPath::toUnix(directory, path)))
            lost += it.key();
    }
    return lost;
}

Reason dropLinks(const QString& directory, const QString& package, const std::atomic_bool& cancelled,
                 const QString& packages) {
    const QString shared = packages + '/' + package + '/';
    QDirIterator files(directory + "/drive_c",
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (!package.isEmpty() && files.hasNext()) {
        if (cancelled)
            return Reason::Cancelled;
        const QString path = files.next();
        const QFileInfo file = files.fileInfo();
        const bool isShared = file.isSymLink() && file.symLinkTarget().startsWith(shared);
        if (!isShared || (file.exists() && !file.isFile()))
            continue;
        // Beside it, and the same for all, so that a kill leaves no more than one.
        const QString copy = file.path() + UnfinishedCopy;
        QFile::remove(copy);
        const bool isDropped = file.isFile() ? FileTree::copyFile(path, copy) &&
                                                   ::rename(QFile::encodeName(copy).constData(),
                                                            QFile::encodeName(path).constData()) == 0
                                             : QFile::remove(path);
        if (!isDropped) {
            const Reason fault = cannotWrite(path, errno);
            QFile::remove(copy);
            return fault;
        }
    }
    return {};
}

Reason forget(const QString& directory) {
    QString error;
    const QString old = directory + Mark, forgotten = directory + ForgottenMark;
    if (QFileInfo::exists(forgotten) && !TreeRemover::remove(forgotten, &error))
        return Reason(Reason::FilesNotWritten, {error});
    // In one step; the rest may be left by a kill.
    if (::rename(QFile::encodeName(old).constData(), QFile::encodeName(forgotten).constData()) != 0)
        return errno == ENOENT ? Reason() : cannotWrite(old, errno);
    return TreeRemover::remove(forgotten, &error) ? Reason() : Reason(Reason::FilesNotWritten, {error});
}

}  // namespace PackageOrigin
