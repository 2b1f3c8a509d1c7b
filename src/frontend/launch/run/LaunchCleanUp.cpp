#include "launch/run/LaunchCleanUp.h"

#include <QDebug>
#include <QFutureWatcher>
#include <QJsonArray>
#include <QJsonObject>
#include <QtConcurrentRun>
#include <functional>

#include "backend/BottleCleanUp.h"
#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"

namespace {

constexpr int Attempts = 2;  // a service that died over the first one is started anew

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

void addEntry(const FileEntry& file, const std::function<void()>& then) {
    whenDone<QString>(QtConcurrent::run(ServiceThreads::pool(), [file] { return file.add(); }),
                      [then](const QString&) { then(); });
}

}  // namespace

void LaunchCleanUp::start(const std::function<void()>& then) const {
    const auto end = [then, hold = PendingWork::instance()->hold()] { then(); };
    BottlesConfig::instance();  // lives in the thread of its first use
    whenDone<QString>(added, [cleanUp = *this, end](const QString& id) { cleanUp.ask(id, Attempts, end); });
}

void LaunchCleanUp::ask(const QString& id, int attempts, const std::function<void()>& end) const {
    BottleCleanUp* service = BottleCleanUp::instance();
    service->deleteIfUnused(file.bottle, isSetUp ? id : QString(), service,
                            [cleanUp = *this, id, attempts, end](const BusResult& answer) {
                                if (!answer.ok && attempts > 1)
                                    cleanUp.ask(id, attempts - 1, end);
                                else
                                    cleanUp.conclude(id, answer, end);
                            });
}

void LaunchCleanUp::conclude(const QString& id, const BusResult& answer,
                             const std::function<void()>& end) const {
    const QJsonObject result = answer.object();
    const bool hasPrograms = !result.value("programs").toArray().isEmpty();
    if (!answer.ok) {
        qWarning().noquote() << "no answer about bottle" << file.bottle << answer.errorMessage;
    } else if (result.value("deleted").toBool()) {
        if (isSetUp)
            qInfo() << "remove bottles for installer not extract lnks";
        qInfo().noquote() << "delete wine container" << file.bottle;
    } else {
        qInfo().noquote() << "bottle" << file.bottle << "stays:" << result.value("reason").toString();
        if (isSetUp && hasPrograms && !id.isEmpty())
            return removeEntry(file.bottle, id, end);
        if (!hasPrograms && id.isEmpty())
            return addEntry(file, end);
    }
    end();
}
