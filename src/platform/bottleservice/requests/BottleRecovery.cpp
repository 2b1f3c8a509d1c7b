#include "bottleservice/requests/BottleRecovery.h"

#include <QDebug>
#include <QFile>

#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/jobs/RecoverInstallJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/wine/BottleStopper.h"

namespace {

void logLeftover(const QString& path) {
    qWarning() << "an earlier run of the service was interrupted; removing what it left:" << path;
}

void removeDirectories(BottleEngine* engine) {
    const BottleAccess& bottles = engine->bottles();
    QStringList leftovers = WorkingDirectory::leftovers(bottles.store().root()) +
                            WorkingDirectory::leftovers(engine->dataDir() + "/templates");
    for (const QString& kind : ComponentStore::kinds())
        leftovers += WorkingDirectory::leftovers(ComponentStore(engine->dataDir()).directoryOf(kind));
    for (const QString& path : qAsConst(leftovers)) {
        logLeftover(path);
        auto* stopper = new BottleStopper(path, bottles.runners().wineserverFor({}), engine);
        stopper->setKind(Processes::Kind::Any);
        QObject::connect(stopper, &BottleStopper::finished, engine, [engine, stopper, path] {
            engine->reclaimer()->remove(path);
            stopper->deleteLater();
        });
        stopper->start();
    }
}

void removeFiles(const QString& dataDir, const BottleStore& store) {
    QStringList files = AtomicFile::leftovers(dataDir);
    for (const QString& bottle : store.names())
        files += AtomicFile::leftovers(store.pathOf(bottle));
    for (const QString& file : qAsConst(files)) {
        logLeftover(file);
        QFile::remove(file);
    }
}

}  // namespace

void BottleRecovery::run(BottleEngine* engine) {
    const BottleAccess& bottles = engine->bottles();
    removeDirectories(engine);
    removeFiles(engine->dataDir(), bottles.store());
    for (const QString& bottle : bottles.store().names()) {
        if (BottleBackup::state(bottles.pathOf(bottle)) != BottleBackup::State::None)
            engine->enqueue(bottle, std::make_unique<RecoverInstallJob>(engine->jobBottle(bottle)));
    }
    for (const QString& bottle : bottles.outdated())
        engine->renew(bottle);
    engine->templates()->removeAllBut(bottles.neededTemplates());
}
