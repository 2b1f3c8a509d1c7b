#include <malloc.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDebug>
#include <QNetworkProxyFactory>
#include <QStandardPaths>
#include <QTextCodec>
#include <QThreadPool>
#include <QTimer>
#include <algorithm>
#include <initializer_list>

#include "bottleservice/BottleEngine.h"
#include "bottleservice/BottleRepairRequests.h"
#include "bottleservice/CleanUpRequests.h"
#include "bottleservice/ComponentRequests.h"
#include "bottleservice/DataDirLock.h"
#include "bottleservice/DependencyRequests.h"
#include "bottleservice/DesktopRequests.h"
#include "bottleservice/IdleExit.h"
#include "bottleservice/LifeRequests.h"
#include "bottleservice/ProgramRequests.h"
#include "bottleservice/RepairOfferRequests.h"
#include "bottleservice/ServiceLog.h"
#include "bottleservice/SettingsRequests.h"
#include "bottleservice/ShutdownSignals.h"
#include "bottleservice/TemplateCommand.h"
#include "bottleservice/TemplatePreparation.h"
#include "bottleservice/TemplateRequests.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/wire/BottlesObject.h"
#include "bottleservice/wire/CleanUpObject.h"
#include "bottleservice/wire/ComponentMethods.h"
#include "bottleservice/wire/DesktopMethods.h"
#include "bottleservice/wire/LifeMethods.h"
#include "bottleservice/wire/ManagerObject.h"
#include "bottleservice/wire/ProgramMethods.h"
#include "bottleservice/wire/ProgramsObject.h"
#include "bottleservice/wire/RepairObject.h"
#include "bottleservice/wire/SettingsMethods.h"
#include "bottleservice/wire/TemplatesObject.h"

namespace {

const char ServiceName[] = "com.lumora.LumoraWineLauncher";
constexpr int LockTimeoutMs = 15000;
constexpr int CloseTimeoutMs = 10000;
const char IdleSeconds[] = "600";

QString dataDirectory() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumora-wine-bottles";
}

struct Arguments {
    int idleSeconds;  ///< after so long without anything to do the service ends
    bool check;
    bool recreate;
    bool prepare;
};

Arguments parse(const QCoreApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Keeps bottles: Wine prefixes with their settings and programs.");
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption idle("idle-seconds", "End after this time without a call; 0 is never.",
                                  "seconds", IdleSeconds);
    const QCommandLineOption check("check-templates",
                                   "End with 1 if the templates of bottles have to be made anew.");
    const QCommandLineOption recreate("recreate-templates",
                                      "Let the service make the templates of bottles anew, and wait for it.");
    const QCommandLineOption prepare("prepare-templates",
                                     "Make the template of the default Wine if it is missing, and end. "
                                     "Does nothing while a service runs.");
    parser.addOptions({idle, check, recreate, prepare});
    parser.process(application);
    return {parser.value(idle).toInt(), parser.isSet(check), parser.isSet(recreate), parser.isSet(prepare)};
}

}  // namespace

int main(int argc, char** argv) {
    // What a worker has used for a moment is to go back when the service rests.
    mallopt(M_ARENA_MAX, 1);
    QCoreApplication application(argc, argv);
    application.setApplicationName("lumora-wine-launcher");
    application.setApplicationVersion(CELLARIX_VERSION);
    // Bottle names are UTF-8 on disk, whatever locale the bus started this process in.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    const Arguments arguments = parse(application);
    const QString dataDir = dataDirectory();
    if (arguments.check)
        return TemplateCommand::check(dataDir);
    if (arguments.recreate)
        return TemplateCommand::recreate();
    if (arguments.prepare)
        return TemplateCommand::prepare(dataDir);
    DataDirLock lock(dataDir);
    ServiceLog::start(dataDir);
    if (!lock.acquire(LockTimeoutMs)) {
        qCritical() << "the bottles in" << dataDir << "are in use by a service of another session";
        return 1;
    }

    QNetworkProxyFactory::setUseSystemConfiguration(true);  // the default differs with how Qt was built
    BottleEngine engine(dataDir);
    engine.recover();
    ProgramRequests programs(&engine, CELLARIX_ICON_EXTRACTOR);
    LifeRequests life(&engine);
    SettingsRequests settings(&engine);
    settings.recover();
    DesktopRequests desktop(&engine, &programs, CELLARIX_COMMAND, CELLARIX_ICON_EXTRACTOR);
    desktop.recover();
    QObject::connect(&life, &LifeRequests::programExited, &desktop, &DesktopRequests::collectAssociations);
    for (const auto changed : {&ProgramRequests::programAdded, &ProgramRequests::programUpdated})
        QObject::connect(&programs, changed, &life, &LifeRequests::onProgramsChanged);
    QObject::connect(&programs, &ProgramRequests::programDeleted, &life, &LifeRequests::onProgramsChanged);
    Downloads downloads(dataDir);
    ComponentRequests components(&engine, &downloads, CELLARIX_CATALOGUE);
    CleanUpRequests cleanUps(&engine, &programs);
    TemplateRequests templates(&engine);
    BottleRepairRequests bottleRepairs(&engine);
    QObject::connect(&engine, &BottleEngine::aboutToDelete, &bottleRepairs, &BottleRepairRequests::cancelAll);
    DependencyRequests dependencies(&engine, &downloads, CELLARIX_CATALOGUE);
    RepairOfferRequests repairOffers(&engine, &downloads, &dependencies);
    QObject::connect(&engine, &BottleEngine::aboutToDelete, &components, &ComponentRequests::cancelAll);
    QObject::connect(&engine, &BottleEngine::aboutToDelete, &dependencies,
                     [&](const QString& bottle) { dependencies.cancel(bottle, [](const Answer&) {}); });
    BottlesObject bottles(&engine);
    addProgramMethods(&bottles, &programs);
    addDesktopMethods(&bottles, &desktop);
    addLifeMethods(&bottles, &life);
    addSettingsMethods(&bottles, &settings);
    addComponentMethods(&bottles, &components);
    addDependencyMethods(&bottles, &dependencies);
    ComponentsObject machine(&components);
    TemplatesObject pristine(&templates);
    CleanUpObject cleanUp(&cleanUps);
    ProgramsObject runs(&life);
    RepairObject repair(&repairOffers, &bottleRepairs);
    ManagerObject manager(application.applicationVersion());
    const std::initializer_list<BusObject*> objects{&bottles, &machine, &pristine, &cleanUp,
                                                    &runs,    &repair,  &manager};
    QDBusConnection bus = QDBusConnection::sessionBus();
    const auto isOnBus = [&bus](BusObject* object) { return object->registerOn(bus); };
    if (!std::all_of(objects.begin(), objects.end(), isOnBus) || !bus.registerService(ServiceName)) {
        qCritical() << "cannot be" << ServiceName << "on the session bus:" << bus.lastError().message();
        return 1;
    }
    qInfo() << "bottle service" << application.applicationVersion() << "serves" << dataDir;

    life.watchPrograms();

    // The name goes first, so that the next call starts a new service, which waits for this one's lock.
    const auto close = [&] {
        qInfo() << "bottle service is ending";
        bus.unregisterService(ServiceName);
        QTimer::singleShot(CloseTimeoutMs, &application, &QCoreApplication::quit);
        components.close();
        dependencies.close();
        repairOffers.close();
        engine.close();
    };
    ShutdownSignals shutdown;
    QObject::connect(&manager, &ManagerObject::quitRequested, &application, close);
    QObject::connect(&shutdown, &ShutdownSignals::received, &application, close);
    QObject::connect(&engine, &BottleEngine::closed, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    const auto areRequestsDone = [&] {
        return programs.isIdle() && desktop.isIdle() && components.isIdle() && dependencies.isIdle() &&
               repairOffers.isIdle();
    };
    const auto isDone = [&] { return engine.isIdle() && areRequestsDone(); };
    IdleExit idle(
        arguments.idleSeconds, [&] { return isDone() && life.isIdle(); }, isDone);
    TemplatePreparation preparation(&engine,
                                    [&] { return engine.isQuiet() && areRequestsDone() && life.isIdle(); });
    for (const BusObject* object : objects) {
        QObject::connect(object, &BusObject::called, &idle, &IdleExit::touch);
        QObject::connect(object, &BusObject::called, &preparation, &TemplatePreparation::touch);
    }
    // A service without its name must not begin anything: the next one waits for its lock.
    QObject::connect(&idle, &IdleExit::leaving, &preparation, &TemplatePreparation::stop);
    preparation.start();
    QObject::connect(&idle, &IdleExit::leaving, &application, [&] { bus.unregisterService(ServiceName); });
    QObject::connect(&idle, &IdleExit::left, &application, close);
    // The bus going away is the end of the session.
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", &shutdown,
                SIGNAL(received()));
    const int code = application.exec();
    QThreadPool::globalInstance()->waitForDone();  // while the lock still keeps the next service away
    return code;
}
