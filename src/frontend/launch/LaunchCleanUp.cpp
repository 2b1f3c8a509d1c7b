#include "launch/LaunchCleanUp.h"

#include <QDebug>
#include <QFutureWatcher>
#include <QJsonArray>
#include <QJsonObject>
#include <QtConcurrent>

#include "backend/BottleCleanUp.h"
#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"

namespace {

/// Calls the handler in the GUI thread with the result, or with nothing when there will be none.
template <class Result>
void whenDone(const QFuture<Result>& future, const std::function<void(const Result&)>& handler) {
    auto* watcher = new QFutureWatcher<Result>(BottleCleanUp::instance());
    QObject::connect(watcher, &QFutureWatcher<Result>::finished, watcher, [watcher, handler] {
        watcher->deleteLater();
        handler(watcher->isCanceled() ? Result() : watcher->result());
    });
    watcher->setFuture(future);
}

void removeEntry(const QString& bottle, const QString& id, const std::function<void()>& then) {
    qInfo().noquote() << "remove setup program: " << bottle << id;
    const auto removal = QtConcurrent::run(ServiceThreads::pool(), [bottle, id] {
        return BottlesConfig::instance()->removeExternalProgram(bottle, id);
    });
    whenDone<BusResult>(removal, [bottle, then](const BusResult& result) {
        if (!result.ok)
            qWarning().noquote() << "the set-up stays a program of" << bottle << result.errorMessage;
        then();
    });
}

}  // namespace

void LaunchCleanUp::start(const std::function<void()>& then) const {
    const auto end = [then, hold = PendingWork::instance()->hold()] { then(); };
    BottlesConfig::instance();  // lives in the thread of its first use
    whenDone<QString>(added, [cleanUp = *this, end](const QString& id) {
        const QString own = cleanUp.isSetUp ? id : QString();
        BottleCleanUp* service = BottleCleanUp::instance();
        service->deleteIfUnused(cleanUp.bottle, own, service, [cleanUp, own, end](const BusResult& answer) {
            const QJsonObject result = answer.object();
            if (!answer.ok) {
                qWarning().noquote() << "bottle" << cleanUp.bottle
                                     << "stays as it is:" << answer.errorMessage;
            } else if (result.value("deleted").toBool()) {
                if (cleanUp.isSetUp)
                    qInfo() << "remove bottles for installer not extract lnks";
                qInfo().noquote() << "delete wine container" << cleanUp.bottle;
            } else {
                qInfo().noquote() << "bottle" << cleanUp.bottle
                                  << "stays:" << result.value("reason").toString();
                if (!own.isEmpty() && !result.value("programs").toArray().isEmpty()) {
                    removeEntry(cleanUp.bottle, own, end);
                    return;
                }
            }
            end();
        });
    });
}
