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

#include "bottleservice/BottleService.h"
#include "bottleservice/EndSignals.h"
#include "bottleservice/IdleExit.h"
#include "bottleservice/ServiceLog.h"
#include "bottleservice/ServiceName.h"
#include "bottleservice/TemplateCommand.h"
#include "bottleservice/files/DataDirLock.h"
#include "bottleservice/requests/TemplatePreparation.h"
#include "fenk/system/UnixSignals.h"

namespace {

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
    // One arena, so that memory of worker threads can be given back to the system.
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
    BottleService service(dataDir, application.applicationVersion());
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!service.registerOn(bus) || !bus.registerService(ServiceName)) {
        qCritical() << "cannot be" << ServiceName << "on the session bus:" << bus.lastError().message();
        return 1;
    }
    qInfo() << "bottle service" << application.applicationVersion() << "serves" << dataDir;
    service.watchPrograms();

    // Clients take signals only from the owner of the name, so the set-ups end before it is released. The
    // rest ends afterwards, so that the next call starts a new service, which waits for this one's lock.
    const auto close = [&] {
        qInfo() << "bottle service is ending";
        service.closeSetups();
        bus.unregisterService(ServiceName);
        QTimer::singleShot(CloseTimeoutMs, &application, &QCoreApplication::quit);
        service.close();
    };
    Fenk::UnixSignals shutdown(EndSignals, Fenk::UnixSignals::Repeated::Received);
    QObject::connect(&service, &BottleService::quitRequested, &application, close);
    QObject::connect(&shutdown, &Fenk::UnixSignals::received, &application, close);
    QObject::connect(&service, &BottleService::closed, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    IdleExit idle(
        arguments.idleSeconds, [&] { return service.isIdle(); }, [&] { return service.isDone(); });
    TemplatePreparation preparation(service.engine(), [&] { return service.isQuiet(); });
    QObject::connect(&service, &BottleService::called, &idle, &IdleExit::touch);
    QObject::connect(&service, &BottleService::called, &preparation, &TemplatePreparation::touch);
    // A service without its name must not begin any work: the next one waits for its lock.
    QObject::connect(&idle, &IdleExit::leaving, &preparation, &TemplatePreparation::stop);
    QObject::connect(&idle, &IdleExit::leaving, &application, [&] { bus.unregisterService(ServiceName); });
    QObject::connect(&idle, &IdleExit::left, &application, close);
    preparation.start();
    // The bus disconnects at the end of the session.
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", &shutdown,
                SIGNAL(received()));
    const int code = application.exec();
    QThreadPool::globalInstance()->waitForDone();  // before the lock is released for the next service
    return code;
}
