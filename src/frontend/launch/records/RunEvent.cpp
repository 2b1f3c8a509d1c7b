#include "launch/records/RunEvent.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>
#include <cmath>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/EmulatorPackage.h"
#include "backend/FileInfoCache.h"
#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"
#include "launch/records/EventRecord.h"

namespace {

/// Rounds, since a float converted to double would be written with 17 digits.
double milliseconds(float seconds) {
    return std::round(double(seconds) * 1000) / 1000;
}

QString runnerVersion(const QString& runner) {
    const BusResult answer = BottlesConfig::instance()->getRunnerVersion(runner);
    return answer.ok ? answer.text : QString();
}

/// The path of the executable; empty if it is only a drive.
QString executable(const QJsonObject& bottle, const QString& programId) {
    const QString path = ProgramRecord::path(BottleRecord::programs(bottle).value(programId).toObject());
    return WindowsPath::isDrive(path) ? QString() : BottleUtils::programPath(bottle, programId);
}

/// Inspects the executable unless that was done before; it takes long.
FileInfoCache::Entry completed(FileInfoCache::Entry entry, const QJsonObject& bottle,
                               const QString& programId) {
    if (!entry.exeName.isEmpty() && !entry.fileInfo64.isEmpty())
        return entry;
    const QString file = executable(bottle, programId);
    if (entry.exeName.isEmpty())
        entry.exeName = QFileInfo(file).fileName();
    if (entry.fileInfo64.isEmpty())
        entry.fileInfo64 = EventRecord::fileInfo64(file);
    return entry;
}

}  // namespace

QJsonObject RunEvent::build(const QString& bottleName, const QString& programId, bool successed,
                            float bootTime, const QDateTime& now, const QJsonObject& machine) {
    const QJsonObject bottle = BottlesConfig::instance()->get(bottleName);
    const QString path = BottleRecord::path(bottle);
    const FileInfoCache cache(path);
    const auto known = path.isEmpty() ? std::nullopt : cache.find(programId);
    const bool repaired = successed && !(known ? known->successed : successed);

    FileInfoCache::Entry program = completed(known.value_or(FileInfoCache::Entry{}), bottle, programId);
    program.successed = successed;

    QJsonObject record = EventRecord::common(now, machine);
    record["action"] = "run_exe";
    record["successed"] = successed;
    record["exename"] = program.exeName;
    record["fileinfo_64"] = program.fileInfo64;
    record["boottime"] = milliseconds(bootTime);
    record["repaired"] = repaired;
    record["runner"] = BottleRecord::runner(bottle);
    record["runner_version"] = runnerVersion(BottleRecord::runner(bottle));
    record["memory_optimization"] = BottleRecord::memOptimized(bottle, true);
    record["winelogs"] =
        EventRecord::base64(EventRecord::logTail(BottleLogs::ofProgram(path, programId)).join('\n'));
    record["raiting"] = ProgramRecord::stars(BottleRecord::programs(bottle).value(programId).toObject());
    static const QRegularExpression storeBottle("program-[0-9a-f]{8,}");
    if (storeBottle.match(bottleName).hasMatch())
        record["appinfoid"] = bottleName;
    record["emulator"] = EmulatorPackage::describe(bottleName);
    if (repaired)
        record["fixed_deps"] = bottle.value("Installed_Dependencies").toArray();

    if (!path.isEmpty() && BottleRecord::programs(bottle).contains(programId))
        cache.setEntry(programId, program);
    return record;
}
