#include "store/install/SetupCleanUp.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonObject>

#include "backend/BottleCleanUp.h"
#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "store/install/PostRunStep.h"

namespace {

// Both in a thread that may wait for the service.

QString add(const SetupCleanUp& cleanUp) {
    return BottleUtils::addExe(cleanUp.bottle, cleanUp.name, cleanUp.setupFile);
}

/// A bottle without a record is not known.
PostRunStep settle(const SetupCleanUp& cleanUp) {
    const QJsonObject record = BottlesConfig::instance()->get(cleanUp.bottle);
    if (record.isEmpty())
        return PostRunStep::Keep;
    const PostRunStep step = postRunStep(BottleRecord::programs(record), cleanUp.setupFile, cleanUp.isSetUp);
    if (step == PostRunStep::AlreadyAdded)
        qInfo().noquote() << "program" << cleanUp.setupFile << "already added in bottles";
    else if (step == PostRunStep::AddFile)
        add(cleanUp);
    return step;
}

}  // namespace

void SetupCleanUp::start(const std::function<void()>& then) const {
    const auto end = [then, hold = PendingWork::instance()->hold()] { then(); };
    inBackground(
        BottleCleanUp::instance(), [cleanUp = *this] { return settle(cleanUp); },
        [cleanUp = *this, end](PostRunStep step) {
            if (step == PostRunStep::DeleteBottle)
                cleanUp.deleteBottle(end);
            else
                end();
        },
        ServiceThreads::inOrder());
}

void SetupCleanUp::deleteUnused(const QString& bottle) {
    BottleCleanUp* service = BottleCleanUp::instance();
    service->deleteIfUnused(
        bottle, {}, service, [bottle, hold = PendingWork::instance()->hold()](const BusResult& answer) {
            if (answer.ok && answer.object().value("deleted").toBool())
                qInfo().noquote() << "bottle" << bottle << "of a cancelled set-up is deleted";
        });
}

void SetupCleanUp::deleteBottle(const std::function<void()>& end) const {
    BottleCleanUp* service = BottleCleanUp::instance();
    service->deleteIfUnused(bottle, {}, service, [cleanUp = *this, end](const BusResult& answer) {
        const QJsonObject result = answer.object();
        const bool isDeleted = answer.ok && result.value("deleted").toBool();
        if (!answer.ok)
            qWarning().noquote() << "no answer about bottle" << cleanUp.bottle << answer.errorMessage;
        else if (isDeleted)
            qInfo() << "Delete bottle because no apps installed";
        else
            qInfo().noquote() << "bottle" << cleanUp.bottle << "stays:" << result.value("reason").toString();
        if (answer.ok && !isDeleted && result.value("programs").toArray().isEmpty())
            cleanUp.addFile(end);
        else
            end();
    });
}

/// So that something leads to the bottle.
void SetupCleanUp::addFile(const std::function<void()>& end) const {
    inBackground(
        BottleCleanUp::instance(), [cleanUp = *this] { return add(cleanUp); },
        [end](const QString&) { end(); }, ServiceThreads::inOrder());
}
