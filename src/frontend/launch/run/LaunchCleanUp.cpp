#include "launch/run/LaunchCleanUp.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonObject>

#include "backend/BottleCleanUp.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"

namespace {
constexpr int Attempts = 2;  // a service that died over the first one is started anew
}

void LaunchCleanUp::start(const std::function<void()>& then) const {
    if (!isSetUp && !isCanceled) {
        then();
        return;
    }
    const auto end = [then, hold = PendingWork::instance()->hold()] { then(); };
    BottlesConfig::instance();  // lives in the thread of its first use
    inBackground(
        BottleCleanUp::instance(), [launched = program] { return launched.addedUuid(); },
        [cleanUp = *this, end](const QString& id) { cleanUp.ask(id, Attempts, end); },
        ServiceThreads::pool());
}

void LaunchCleanUp::ask(const QString& id, int attempts, const std::function<void()>& end) const {
    BottleCleanUp* service = BottleCleanUp::instance();
    service->deleteIfUnused(program.file.bottle, isSetUp ? id : QString(), service,
                            [cleanUp = *this, id, attempts, end](const BusResult& answer) {
                                if (!answer.ok && attempts > 1)
                                    cleanUp.ask(id, attempts - 1, end);
                                else
                                    cleanUp.conclude(id, answer, end);
                            });
}

void LaunchCleanUp::conclude(const QString& id, const BusResult& answer,
                             const std::function<void()>& end) const {
    const QString bottle = program.file.bottle;
    const QJsonObject result = answer.object();
    const bool hasPrograms = !result.value("programs").toArray().isEmpty();
    if (!answer.ok) {
        qWarning().noquote() << "no answer about bottle" << bottle << answer.errorMessage;
    } else if (result.value("deleted").toBool()) {
        if (isSetUp)
            qInfo() << "remove bottles for installer not extract lnks";
        qInfo().noquote() << "delete wine container" << bottle;
    } else {
        qInfo().noquote() << "bottle" << bottle << "stays:" << result.value("reason").toString();
        if (isSetUp && hasPrograms && !id.isEmpty())
            return removeEntry(id, end);
        if (!hasPrograms && id.isEmpty())
            return addEntry(end);
    }
    end();
}

void LaunchCleanUp::removeEntry(const QString& id, const std::function<void()>& end) const {
    const QString bottle = program.file.bottle;
    qInfo().noquote() << "remove setup program: " << bottle << id;
    inBackground(
        BottleCleanUp::instance(),
        [bottle, id] { return BottlesConfig::instance()->removeExternalProgram(bottle, id); },
        [bottle, end](const BusResult& result) {
            if (!result.ok)
                qWarning().noquote() << "the set-up stays a program of" << bottle << result.errorMessage;
            end();
        },
        ServiceThreads::pool());
}

void LaunchCleanUp::addEntry(const std::function<void()>& end) const {
    inBackground(
        BottleCleanUp::instance(), [file = program.file] { return file.add(); },
        [end](const QString&) { end(); }, ServiceThreads::pool());
}
