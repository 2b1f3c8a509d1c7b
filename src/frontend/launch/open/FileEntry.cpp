#include "launch/open/FileEntry.h"

#include <QDebug>
#include <QJsonObject>

#include "backend/BottleUtils.h"

QString FileEntry::find() const {
    const QJsonObject programs = BottleUtils::bottlePrograms(bottle);
    for (auto program = programs.begin(); program != programs.end(); ++program) {
        if (program->toObject().value("path").toString() == exePath)
            return program.key();
    }
    return {};
}

QString FileEntry::add() const {
    if (!find().isEmpty()) {
        qInfo().noquote() << "program " << exePath << " already added in bottles";
        return {};
    }
    return BottleUtils::addExe(bottle, name, exePath);
}
