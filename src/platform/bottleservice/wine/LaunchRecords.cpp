#include "bottleservice/wine/LaunchRecords.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/ProcessEnd.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 32768;  // enough for an escaped path
constexpr int MaximumIdCharacters = 128;
constexpr int MaximumNameCharacters = 255;

QJsonObject contentOf(const QString& file) {
    const QByteArray text = Fenk::RegularFile::read(file, MaximumBytes).value_or(QByteArray());
    return QJsonDocument::fromJson(text).object();
}

/// 0 when the script has ended.
pid_t livingPid(const QJsonObject& record) {
    const pid_t pid = record["pid"].toInt();
    return pid > 1 && ProcessEnd::startTime(pid) == record["start"].toString() ? pid : 0;
}

/// Ending others, such as those that pack the bottle, would lose their work.
bool isLaunch(const QJsonObject& start) {
    return start["kind"].toString().isEmpty();
}

QStringList startsIn(const QString& directory) {
    QStringList files;
    for (const QString& name : QDir(directory).entryList({"*.start"}, QDir::Files | QDir::NoSymLinks))
        files += directory + '/' + name;
    return files;
}

}  // namespace

bool LaunchRecord::read(const QString& file, LaunchRecord* record) {
    const QJsonObject object = contentOf(file);
    record->bottle = object["bottle"].toString();
    record->program = object["program"].toString();
    record->pid = livingPid(object);
    return BottleName::check(record->bottle).isEmpty() && !record->program.isEmpty() &&
           record->program.size() <= MaximumIdCharacters;
}

QVector<pid_t> LaunchRecord::launchers(const QString& directory, const QString& bottle,
                                       const QString& program) {
    QVector<pid_t> pids;
    const QStringList names = QDir(directory).entryList({"*.json"}, QDir::Files | QDir::NoSymLinks);
    for (const QString& name : names) {
        LaunchRecord record;
        if (read(directory + '/' + name, &record) && record.pid != 0 && record.bottle == bottle &&
            (program.isEmpty() || record.program == program))
            pids += record.pid;
    }
    for (const QString& file : program.isEmpty() ? startsIn(directory) : QStringList()) {
        const QJsonObject start = contentOf(file);
        const pid_t pid = livingPid(start);
        if (pid != 0 && isLaunch(start) && start["bottle"].toString() == bottle && !pids.contains(pid))
            pids += pid;
    }
    return pids;
}

QStringList LaunchRecord::starting(const QString& directory, const QString& bottle) {
    QStringList names;
    for (const QString& file : startsIn(directory)) {
        const QJsonObject record = contentOf(file);
        if (isLaunch(record) && livingPid(record) != 0 && record["bottle"].toString() == bottle)
            names += record["name"].toString().left(MaximumNameCharacters);
    }
    return names;
}

QString LaunchRecord::maintenance(const QString& directory, const QString& bottle) {
    for (const QString& file : startsIn(directory)) {
        const QJsonObject record = contentOf(file);
        if (!isLaunch(record) && livingPid(record) != 0 && record["bottle"].toString() == bottle)
            return record["kind"].toString();
    }
    return {};
}

QVector<LaunchRecord::Claim> LaunchRecord::claims(const QString& directory) {
    QVector<Claim> claims;
    for (const QString& file : startsIn(directory)) {
        const QJsonObject record = contentOf(file);
        const Claim claim{record["bottle"].toString(), record["name"].toString(), record["file"].toString(),
                          livingPid(record)};
        if (isLaunch(record) && claim.pid != 0 && BottleName::check(claim.bottle).isEmpty())
            claims += claim;
    }
    return claims;
}

void LaunchRecord::removeEndedStarts(const QString& directory) {
    for (const QString& file : startsIn(directory)) {
        if (livingPid(contentOf(file)) == 0)
            QFile::remove(file);
    }
}
