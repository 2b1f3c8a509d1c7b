#include "backend/BottleUtils.h"

#include <QDebug>
#include <QFileInfo>
#include <QUuid>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"

namespace {

BottlesConfig& service() {
    return *BottlesConfig::instance();
}

/// A Windows path in Unix form, other paths as they are; empty when the bottle has no directory to look in.
QString unixPath(const QJsonObject& bottleRecord, const QString& path) {
    if (!WindowsPath::isWindowsPath(path))
        return path;
    const QString bottlePath = BottleRecord::path(bottleRecord);
    return bottlePath.isEmpty() ? QString() : WindowsPath::toUnix(bottlePath, path);
}

}  // namespace

void BottleUtils::warnNotInBottle(const QString& bottle, const QString& programId) {
    qWarning().noquote().nospace() << "program " << programId << " not in bottles: " << bottle;
}

QString BottleUtils::bottlePath(const QString& bottle) {
    return BottleRecord::path(service().get(bottle));
}

QJsonObject BottleUtils::bottlePrograms(const QString& bottle) {
    return BottleRecord::programs(service().get(bottle));
}

QString BottleUtils::programPath(const QString& bottle, const QString& programId) {
    return programPath(service().get(bottle), programId);
}

QString BottleUtils::programPath(const QJsonObject& bottleRecord, const QString& programId) {
    const QJsonObject program = BottleRecord::programs(bottleRecord).value(programId).toObject();
    const QString path = unixPath(bottleRecord, ProgramRecord::path(program));
    const bool windows = WindowsPath::isWindowsPath(ProgramRecord::path(program));
    return windows || QFileInfo(path).isFile() ? path : QString();
}

bool BottleUtils::createDesktopEntry(const QString& bottle, const QString& programId) {
    const BusResult result = service().createDesktopEntry(bottle, programId);
    if (!result.ok)
        qWarning().noquote() << "no desktop entry for" << programId << "of" << bottle << result.errorMessage;
    return result.ok;
}

void BottleUtils::killProgram(const QString& bottle, const QString& programId) {
    service().killProgram(bottle, programId);
}

void BottleUtils::openDriveC(const QString& bottle) {
    service().watchBottle(bottle, &service(), [bottle](const BusResult& result) {
        const QString path = BottleRecord::path(result.object());
        const QString drive = path + "/drive_c";
        if (path.isEmpty() || !QFileInfo(drive).isDir())
            qWarning().noquote() << "no directory of bottle" << bottle << "to open";
        else
            DesktopUtils::openLocal(drive);
    });
}

void BottleUtils::openProgramFolder(const QString& bottle, const QString& programId) {
    service().watchBottle(bottle, &service(), [bottle, programId](const BusResult& result) {
        const QJsonObject record = result.object();
        const QJsonObject program = BottleRecord::programs(record).value(programId).toObject();
        const QString folder = unixPath(record, ProgramRecord::folder(program));
        if (program.isEmpty())
            warnNotInBottle(bottle, programId);
        else if (QFileInfo(folder).isFile())  // which would be run or opened by what the desktop has for it
            qWarning().noquote() << "not a folder:" << folder;
        else
            DesktopUtils::openLocal(folder);
    });
}

void BottleUtils::runCommand(const QString& bottle, const QString& commandLine, QObject* context,
                             const std::function<void(const BusResult&)>& handler) {
    qInfo().noquote().nospace() << "[" << bottle << "] " << commandLine;
    service().runCommand(bottle, commandLine, context, handler);
}

BottleUtils::Removal BottleUtils::deleteEntry(const QString& bottle, const QString& programId,
                                              bool deleteEmptyBottle) {
    qInfo().noquote() << "deleteAppEntry: " << bottle << programId;
    const BusResult removed = service().removeExternalProgram(bottle, programId);
    if (!removed.ok) {
        qWarning().noquote() << "can't remove" << programId << "from" << bottle << removed.errorMessage;
        return Removal::ProgramRefused;
    }
    if (!deleteEmptyBottle)
        return Removal::Done;
    const QJsonObject record = service().get(bottle);
    const bool isEmpty = BottleRecord::hasPrograms(record) && BottleRecord::programs(record).isEmpty();
    return isEmpty ? deleteBottle(bottle) : Removal::Done;
}

BottleUtils::Removal BottleUtils::deleteBottle(const QString& bottle) {
    qInfo().noquote().nospace() << "delete bottles: " << bottle;
    const BusResult deleted = service().deleteBottleAndWait(bottle);
    if (deleted.ok)
        return Removal::Done;
    qWarning().noquote() << "can't delete" << bottle << deleted.errorMessage;
    return Removal::BottleRefused;
}

QString BottleUtils::addExe(const QString& bottle, const QString& name, const QString& path) {
    qInfo().noquote().nospace() << "Add exe self: " << path;
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const BusResult result = service().updateExternalProgram(bottle, ProgramRecord::minimal(id, name, path));
    if (!result.ok) {
        qWarning().noquote() << "can't add" << path << "to" << bottle << result.errorMessage;
        // The service may have done it and died before it could answer.
        return bottlePrograms(bottle).contains(id) ? id : QString();
    }
    return id;
}

bool BottleUtils::setStars(const QString& bottle, const QString& programId, int stars) {
    if (!bottlePrograms(bottle).contains(programId)) {
        warnNotInBottle(bottle, programId);
        return false;
    }
    const BusResult result = service().updateExternalProgram(bottle, {{"id", programId}, {"stars", stars}});
    if (result.ok)
        qInfo().noquote().nospace() << "update app rating in cfg: " << bottle << ":" << programId << "->"
                                    << stars;
    else
        qWarning().noquote().nospace() << "update app rating failed: " << result.errorMessage;
    return result.ok;
}

BottleUtils::Change BottleUtils::setNameAndIcon(const QString& bottle, const QString& programId,
                                                const QString& name, const QString& icon) {
    const QJsonObject record = service().get(bottle);
    if (!BottleRecord::programs(record).contains(programId)) {
        warnNotInBottle(bottle, programId);
        // Nothing at all comes of a service that has not answered.
        return record.isEmpty() ? Change::Refused : Change::NoProgram;
    }
    const BusResult result =
        service().updateExternalProgram(bottle, {{"id", programId}, {"name", name}, {"icon", icon}});
    if (result.ok)
        qInfo().noquote().nospace() << "update app info in cfg: " << bottle << ":" << programId;
    else
        qWarning().noquote().nospace() << "update app rating failed: " << result.errorMessage;
    return result.ok ? Change::Done : Change::Refused;
}
