#include "launch/run/LaunchedProgram.h"

#include <QDebug>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/InBackground.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"
#include "core/base/WineNames.h"
#include "launch/records/FailedStarts.h"

bool LaunchedProgram::isPublic() const {
    return WineNames::isPublicBottle(file.bottle);
}

std::optional<QJsonObject> LaunchedProgram::entry(const QJsonObject& bottleRecord) const {
    if (bottleRecord.isEmpty()) {
        qWarning().noquote() << "Invalid bottles name:" << file.bottle;
        return {};
    }
    const QJsonObject programs = BottleRecord::programs(bottleRecord);
    if (!programs.contains(uuid)) {
        qWarning().noquote() << "Program UUID" << uuid << "not found in bottles:" << file.bottle;
        return {};
    }
    return programs.value(uuid).toObject();
}

void LaunchedProgram::addFile() {
    if (isStored())
        return;
    added = PendingWork::instance()->run(ServiceThreads::pool(), [program = *this] {
        const QString known = program.addedUuid();
        return known.isEmpty() ? program.file.add() : known;
    });
}

void LaunchedProgram::checkLinks(bool success, bool isInstaller) {
    const bool isAdded = !isStored() && (!isInstaller || !success);
    added = PendingWork::instance()->run(ServiceThreads::pool(), [program = *this, isAdded] {
        const QString known = program.addedUuid();
        const bool linksCreated = !BottleUtils::bottlePrograms(program.file.bottle).isEmpty();
        qInfo().noquote() << "lnk created: " << (linksCreated ? "true" : "false");
        return known.isEmpty() && !linksCreated && isAdded ? program.file.add() : known;
    });
}

QString LaunchedProgram::addedUuid() const {
    return added.isCanceled() ? QString() : added.result();
}

void LaunchedProgram::recordStart(const FailedStart& start) const {
    FailedStarts* records = FailedStarts::instance();
    if (isStored()) {
        records->record(file.bottle, uuid, start);
        return;
    }
    const auto findUuid = [program = *this] {
        program.addedUuid();  // the entry to find may be under way
        return program.file.find();
    };
    inBackground(
        records, findUuid,
        [records, start, bottle = file.bottle, hold = PendingWork::instance()->hold()](const QString& found) {
            if (!found.isEmpty())
                records->record(bottle, found, start);
        },
        ServiceThreads::pool());
}
