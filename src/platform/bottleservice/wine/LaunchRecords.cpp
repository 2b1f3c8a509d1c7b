#include "bottleservice/wine/LaunchRecords.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/PlainFile.h"
#include "bottleservice/wine/ProcessEnd.h"

namespace {

constexpr qint64 MaximumBytes = 4096;
constexpr int MaximumIdCharacters = 128;

}  // namespace

bool LaunchRecord::read(const QString& file, LaunchRecord* record) {
    const QByteArray text = PlainFile::read(file, MaximumBytes).value_or(QByteArray());
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    record->bottle = object["bottle"].toString();
    record->program = object["program"].toString();
    record->pid = object["pid"].toInt();
    if (record->pid <= 1 || ProcessEnd::startTime(record->pid) != object["start"].toString())
        record->pid = 0;
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
    return pids;
}
