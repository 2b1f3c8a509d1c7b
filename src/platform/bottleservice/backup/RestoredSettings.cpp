#include "bottleservice/backup/RestoredSettings.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QUuid>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/bottles/Programs.h"
#include "manifest/SettingRules.h"

namespace RestoredSettings {

namespace {

constexpr int MaximumNameCharacters = 100;
constexpr int MaximumNames = 100;
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
    if (record->value("icon").toString() == place.path + icon.arg(oldId) && Programs::isProgramId(oldId) &&
        QFile::rename(directory + icon.arg(oldId), directory + icon.arg(newId)))
        record->insert("icon", place.path + icon.arg(newId));
}

/// Settings that a caller of the service could make, too; others keep the value of a new bottle. What the
/// service notes for itself, such as work that is under way, is not taken over.
void takeValues(const QJsonObject& record, const QString& directory, BottleYaml* settings) {
    const QJsonObject parameters = record["Parameters"].toObject();
    for (const char* name : {"cpu_rendering", "discrete_gpu", "mem_optimized", "ntsync"}) {
        const QString key = name;
        if (parameters[key].isBool())
            settings->setIn("Parameters", key, parameters[key]);
    }
    const int dpi = parameters["custom_dpi"].toInt();
    if (dpi >= SettingRules::MinimumDpi && dpi <= SettingRules::MaximumDpi)
        settings->setIn("Parameters", "custom_dpi", dpi);
    if (SettingRules::isRenderer(parameters["renderer"].toString()))
        settings->setIn("Parameters", "renderer", parameters["renderer"]);
    const bool is64Bit = QFileInfo(directory + "/drive_c/windows/syswow64").isDir();
    const QString windows = SettingRules::windowsVersion(record["Windows"].toString(), is64Bit);
    if (!windows.isEmpty())
        settings->set("Windows", windows);
    for (const char* key : {"DXVK", "VKD3D", "Emulator"}) {
        if (SettingRules::isPlainName(record[QLatin1String(key)].toString()))
            settings->set(key, record[QLatin1String(key)]);
    }
    const QJsonObject overrides = record["DLL_Overrides"].toObject();
    for (auto it = overrides.begin(); it != overrides.end(); ++it) {
        if (SettingRules::isDllName(it.key()) && SettingRules::isLoadMethod(it.value().toString()))
            settings->setIn("DLL_Overrides", it.key(), it.value());
    }
    const QJsonObject fonts = record["Font_Replacements"].toObject();
    for (auto it = fonts.begin(); it != fonts.end(); ++it) {
        if (SettingRules::isFontName(it.key()) && SettingRules::isFontName(it.value().toString()))
            settings->setIn("Font_Replacements", it.key(), it.value());
    }
    QJsonArray dependencies;
    for (const QJsonValue& name : record["Installed_Dependencies"].toArray()) {
        if (SettingRules::isPlainName(name.toString()))
            dependencies += name;
    }
    settings->set("Installed_Dependencies", dependencies);
}

/// A program as a caller could enter it, without variables that lead native programs elsewhere.
QJsonObject checkedProgram(const QJsonObject& program, QStringList* dropped, QString* error) {
    QJsonObject envs;
    const QJsonObject all = program["envs"].toObject();
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (SettingRules::isSharedVariable(it.key()))
            envs.insert(it.key(), it.value());
        else
            *dropped += it.key().left(MaximumNameCharacters);
    }
    QJsonObject given;
    for (const char* key : {"id", "name", "path", "folder", "icon", "arguments", "stars", "created_time"}) {
        if (program.contains(QLatin1String(key)))
            given.insert(QLatin1String(key), program[QLatin1String(key)]);
    }
    given.insert("envs", envs);
    const QJsonObject parsed = Programs::parse(JsonText::compact(given), error);
    return error->isEmpty() ? Programs::completed(parsed, QDateTime::currentDateTime(), error) : parsed;
}

}  // namespace

QString freeName(const QString& wanted, const std::function<bool(const QString&)>& isTaken) {
    constexpr int SuffixBytes = 12;
    constexpr int MaximumNumber = 1000;
    QString stem = wanted;
    while (stem.toUtf8().size() > BottleName::MaximumPartBytes - SuffixBytes)
        stem.chop(stem.at(stem.size() - 1).isLowSurrogate() ? 2 : 1);
    QString name = wanted;
    for (int number = 2; isTaken(name); ++number) {
        if (number > MaximumNumber)
            return {};
        name = QString("%1 (%2)").arg(stem).arg(number);
    }
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

BottleYaml adapted(const BottleYaml& old, const BackupList& list, const Place& place,
                   const QSet<QString>& takenIds, const QString& directory, QStringList* variables) {
    const QJsonObject record = old.record();
    BottleYaml settings = BottleYaml::fresh(place.name, place.runner, QDateTime::currentDateTime());
    settings.set("Template", list.build.isEmpty() ? QString() : place.templateKey);
    takeValues(record, directory, &settings);
    const QJsonObject programs = old.programs();
    for (auto it = programs.begin(); it != programs.end(); ++it) {
        QJsonObject program = it.value().toObject();
        for (const char* key : PathKeys) {
            if (program.contains(QLatin1String(key)))
                program[QLatin1String(key)] = moved(program[QLatin1String(key)].toString(), list, place);
        }
        QString id = it.key();
        if (!Programs::isProgramId(id) || takenIds.contains(id)) {
            id = QUuid::createUuid().toString(QUuid::WithoutBraces);
            renameIcon(&program, it.key(), id, place, directory);
            program.insert("id", id);
        }
        QString error;
        program = checkedProgram(program, variables, &error);
        if (error.isEmpty())
            settings.setProgram(id, program);
        else
            qWarning() << "a program of the backup is left out:" << error;
    }
    variables->removeDuplicates();
    *variables = variables->mid(0, MaximumNames);
    if (!variables->isEmpty())
        qWarning() << "variables of the backup are left out:" << *variables;
    return settings;
}

}  // namespace RestoredSettings
