#include "launch/FileEntry.h"

#include <QDebug>
#include <QJsonObject>

#include "backend/BottleUtils.h"

QString FileEntry::add() const {
    const QJsonObject programs = BottleUtils::bottlePrograms(bottle);
    for (const QJsonValue& program : programs) {
        if (program.toObject().value("path").toString() == exePath) {
            qInfo().noquote() << "program " << exePath << " already added in bottles";
            return {};
        }
    }
    return BottleUtils::addExe(bottle, name, exePath);
}
