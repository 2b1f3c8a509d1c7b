#include "shell/configuration/executables/ExecutableList.h"

#include <QDebug>
#include <QFileInfo>
#include <QSet>

#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"
#include "launch/inspection/ExeFileInfo.h"

QVector<Executable> ExecutableList::of(const QString& bottlePath, const QJsonArray& programs) {
    QVector<Executable> list;
    QSet<QString> known;
    for (const QJsonValue& value : programs) {
        const QJsonObject record = value.toObject();
        const QString path = ProgramRecord::path(record);
        const bool isWindows = WindowsPath::isWindowsPath(path);
        if (path.isEmpty() || WindowsPath::isDrive(path))
            continue;
        const QString file = isWindows ? WindowsPath::toUnix(bottlePath, path) : path;
        const QString canonical = QFileInfo(file).canonicalFilePath();
        const QString key = canonical.isEmpty() ? file : canonical;
        if (known.contains(key)) {
            qInfo().noquote() << "Program already exists: " << path;
            continue;
        }
        known.insert(key);
        qInfo().noquote() << "Append program: " << path;
        const QString name = ProgramRecord::name(record).simplified();
        const bool isNamed = !name.isEmpty();
        list.append({isNamed ? name : QFileInfo(file).completeBaseName(), path, record,
                     !ProgramRecord::autoDiscovered(record), file, isNamed});
    }
    return list;
}

QJsonObject ExecutableList::entryOf(const Executable& executable) {
    QJsonObject record = ProgramRecord::adopted(executable.record);
    record.insert("name", executable.name);
    return record;
}

QString ExecutableList::nameInVersionBlock(const QString& file) {
    if (!QFileInfo(file).isFile())
        return {};
    const QJsonObject block = peVersionInfo(file);
    for (const char* key : {"ProductName", "FileDescription"}) {
        const QString name = block.value(QLatin1String(key)).toString().simplified();
        if (!name.isEmpty())
            return name;
    }
    return {};
}
