#include "bottleservice/components/BottleBackup.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <cerrno>
#include <cstring>

#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/FileTree.h"
#include "fenk/system/RegularFile.h"

namespace BottleBackup {

namespace {

const char Directory[] = "/.before-install";
const char Journal[] = "/journal.json";
const char* const Registries[] = {"/system.reg", "/user.reg", "/userdef.reg"};
constexpr qint64 MaximumJournalBytes = 4096;

/// Links count as missing, since programs can make them; they are never followed.
bool isRealDirectory(const QString& path) {
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QString moved(const QString& from, const QString& to) {
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return {};
    return QString("Cannot move %1 to %2: %3.").arg(from, to, QString::fromLocal8Bit(strerror(errno)));
}

}  // namespace

QString pathOf(const QString& bottlePath) {
    return bottlePath + Directory;
}

QString idOf(const QString& bottlePath) {
    if (!isRealDirectory(pathOf(bottlePath)))
        return {};
    const auto text = Fenk::RegularFile::read(pathOf(bottlePath) + Journal, MaximumJournalBytes);
    return text ? QJsonDocument::fromJson(*text).object()["id"].toString() : QString();
}

State state(const QString& bottlePath) {
    if (!isRealDirectory(pathOf(bottlePath)))
        return State::None;
    return idOf(bottlePath).isEmpty() ? State::Unfinished : State::Whole;
}

QString announce(const QString& bottlePath) {
    const QString backup = pathOf(bottlePath);
    if (!isRealDirectory(bottlePath + "/drive_c") || !isRealDirectory(bottlePath + "/drive_c/windows"))
        return "The bottle has no directory drive_c/windows.";
    if (!isRealDirectory(backup))
        QFile::remove(backup);  // a file of a program
    if (!QDir().mkdir(backup))
        return QString("Cannot make %1.").arg(backup);
    QString error;
    AtomicFile::replace(backup + Journal, "{}\n", &error, AtomicFile::Safety::Quick);
    return error;
}

QString make(const QString& bottlePath, const QString& id, const std::atomic_bool& cancelled) {
    const QString backup = pathOf(bottlePath);
    if (!QDir().mkdir(backup + "/windows"))
        return QString("Cannot make %1.").arg(backup + "/windows");
    QString error = FileTree::copy(bottlePath + "/drive_c/windows", backup + "/windows", cancelled);
    for (const char* registry : Registries) {
        if (error.isEmpty() && QFile::exists(bottlePath + registry) &&
            !FileTree::copyFile(bottlePath + registry, backup + registry))
            error = QString("Cannot copy %1.").arg(bottlePath + registry);
    }
    if (error.isEmpty())
        AtomicFile::replace(backup + Journal, QJsonDocument(QJsonObject{{"id", id}}).toJson(), &error);
    return error;
}

QString restore(const QString& bottlePath) {
    const QString backup = pathOf(bottlePath);
    const QString drive = bottlePath + "/drive_c";
    const QString windows = drive + "/windows";
    QString error;
    if (isRealDirectory(backup + "/windows")) {
        // An installer may have replaced it by a link, or removed it.
        if (!isRealDirectory(drive)) {
            QFile::remove(drive);
            QDir().mkdir(drive);
        }
        if (!isRealDirectory(windows))
            QFile::remove(windows);
        else
            error = moved(windows, backup + "/failed-" + QUuid::createUuid().toString(QUuid::Id128));
        if (error.isEmpty())
            error = moved(backup + "/windows", windows);
    }
    for (const char* registry : Registries) {
        if (error.isEmpty() && QFile::exists(backup + registry))
            error = moved(backup + registry, bottlePath + registry);
    }
    return error;
}

QString dismiss(const QString& bottlePath) {
    if (!isRealDirectory(pathOf(bottlePath)))
        return {};
    const QString journal = pathOf(bottlePath) + Journal;
    return !QFile::exists(journal) || QFile::remove(journal) ? QString()
                                                             : QString("Cannot remove %1.").arg(journal);
}

}  // namespace BottleBackup
