#include "store/install/SetupCleanUp.h"

#include <QDebug>
#include <QJsonObject>

#include "backend/BottleCleanUp.h"
#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "store/install/PostRunStep.h"

namespace {

/// In a thread that may wait for the service. A bottle without a record is not known.
PostRunStep settle(const SetupCleanUp& cleanUp) {
    const QJsonObject record = BottlesConfig::instance()->get(cleanUp.bottle);
    if (record.isEmpty())
        return PostRunStep::Keep;
    const PostRunStep step =
        postRunStep(BottleRecord::programs(record), cleanUp.setupFile, cleanUp.isSetUp);
    if (step == PostRunStep::AlreadyAdded)
        qInfo().noquote() << "program" << cleanUp.setupFile << "already added in bottles";
    else if (step == PostRunStep::AddFile)
        BottleUtils::addExe(cleanUp.bottle, cleanUp.name, cleanUp.setupFile);
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

void SetupCleanUp::deleteBottle(const std::function<void()>& end) const {
    BottleCleanUp* service = BottleCleanUp::instance();
    service->deleteIfUnused(bottle, {}, service, [name = bottle, end](const BusResult& answer) {
        const QJsonObject result = answer.object();
        if (!answer.ok)
            qWarning().noquote() << "no answer about bottle" << name << answer.errorMessage;
        else if (result.value("deleted").toBool())
            qInfo() << "Delete bottle because no apps installed";
        else
            qInfo().noquote() << "bottle" << name << "stays:" << result.value("reason").toString();
        end();
    });
}
