#include "bottleservice/backup/RestoredSettings.h"

#include <QFile>
#include <QUuid>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/Programs.h"

namespace RestoredSettings {

namespace {

const char* const PathKeys[] = {"path", "folder", "icon"};

QString onDriveZ(const QString& path) {
    return "Z:" + QString(path).replace('/', '\\');
}

/// Nothing when the path does not lie there.
bool replaceStart(QString* path, const QString& from, const QString& to, QChar separator,
                  Qt::CaseSensitivity caseOf) {
    if (from.isEmpty() || !path->startsWith(from + separator, caseOf))
        return false;
    *path = to + path->mid(from.size());
    return true;
}

/// The icon that the service keeps for a program goes with the program's id.
void renameIcon(QJsonObject* record, const QString& oldId, const QString& newId, const Place& place,
                const QString& directory) {
    const QString icon = QString("/icons/%1.png");
    if ((*record)["icon"].toString() == place.path + icon.arg(oldId) && Programs::isProgramId(oldId) &&
        QFile::rename(directory + icon.arg(oldId), directory + icon.arg(newId)))
        record->insert("icon", place.path + icon.arg(newId));
}

}  // namespace

QString freeName(const QString& wanted, const std::function<bool(const QString&)>& isTaken) {
    constexpr int SuffixBytes = 12;
    QString stem = wanted;
    while (stem.toUtf8().size() > BottleName::MaximumPartBytes - SuffixBytes)
        stem.chop(stem.at(stem.size() - 1).isLowSurrogate() ? 2 : 1);
    QString name = wanted;
    for (int number = 2; isTaken(name); ++number)
        name = QString("%1 (%2)").arg(stem).arg(number);
    return name;
}

QString moved(const QString& path, const BackupList& list, const Place& place) {
    const std::pair<QString, QString> moves[] = {{list.path, place.path}, {list.home, place.home}};
    QString result = path;
    for (const auto& [from, to] : moves) {
        if (replaceStart(&result, from, to, '/', Qt::CaseSensitive) ||
            replaceStart(&result, onDriveZ(from), onDriveZ(to), '\\', Qt::CaseInsensitive))
            break;
    }
    return result;
}

void adapt(BottleYaml* settings, const BackupList& list, const Place& place, const QSet<QString>& takenIds,
           const QString& directory) {
    settings->set("Name", place.name);
    settings->set("Runner", place.runner);
    settings->set("Template", list.build.isEmpty() ? QString() : place.templateKey);
    const QJsonObject programs = settings->programs();
    for (auto it = programs.begin(); it != programs.end(); ++it) {
        QJsonObject record = it.value().toObject();
        for (const char* key : PathKeys) {
            if (record.contains(QLatin1String(key)))
                record[QLatin1String(key)] = moved(record[QLatin1String(key)].toString(), list, place);
        }
        QString id = it.key();
        if (!Programs::isProgramId(id) || takenIds.contains(id)) {
            id = QUuid::createUuid().toString(QUuid::WithoutBraces);
            renameIcon(&record, it.key(), id, place, directory);
            settings->removeProgram(it.key());
            record.insert("id", id);
        }
        settings->setProgram(id, record);
    }
}

}  // namespace RestoredSettings
