#include "bottleservice/TemplateCommand.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <limits>

#include "bottleservice/EndSignals.h"
#include "bottleservice/ServiceLog.h"
#include "bottleservice/ServiceName.h"
#include "bottleservice/files/DataDirLock.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/TemplateRecord.h"
#include "bottleservice/wine/Templates.h"
#include "fenk/system/UnixSignals.h"

namespace {

const char ObjectPath[] = "/com/lumora/Manager/Templates";
const char InterfaceName[] = "com.lumora.Manager.Templates";
constexpr int PollMs = 250;

}  // namespace

void TemplatePrinter::print(const QString& line) {
    std::printf("%s\n", line.toLocal8Bit().constData());
    std::fflush(stdout);
}

int TemplateCommand::check(const QString& dataDir) {
    if (TemplateRecord::isOutdated(dataDir))
        return 1;
    // A running service may be making unfinished ones.
    return TemplateRecord::hasUnfinished(dataDir) && DataDirLock(dataDir).acquire(0) ? 1 : 0;
}

int TemplateCommand::recreate() {
    std::signal(SIGPIPE, SIG_IGN);
    QDBusConnection bus = QDBusConnection::sessionBus();
    TemplatePrinter printer;
    bus.connect(ServiceName, ObjectPath, InterfaceName, "progress", &printer, SLOT(print(QString)));
    const QDBusPendingCallWatcher watcher(
        bus.asyncCall(QDBusMessage::createMethodCall(ServiceName, ObjectPath, InterfaceName, "recreate"),
                      std::numeric_limits<int>::max()));
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &printer, [&watcher, &printer] {
        if (watcher.isError())
            printer.print(watcher.error().message());
        QCoreApplication::exit(watcher.isError() ? 1 : 0);
    });
    return QCoreApplication::exec();
}

int TemplateCommand::prepare(const QString& dataDir) {
    const auto runner = Runners(dataDir).find(Runners::DefaultName);
    DataDirLock lock(dataDir);
    if (!runner || !lock.acquire(0))
        return 0;
    Reclaimer reclaimer;
    Templates templates(dataDir, &reclaimer);
    if (!templates.isMissing(*runner))
        return 0;
    ServiceLog::start(dataDir);
    const auto leave = [&templates] {
        if (!templates.isAlmostDone())
            templates.cancel();
    };
    const Fenk::UnixSignals shutdown(EndSignals, Fenk::UnixSignals::Repeated::Received);
    QObject::connect(&shutdown, &Fenk::UnixSignals::received, &templates, leave);
    // A service does not wait for the directory as long as a template takes.
    QTimer pollTimer;
    QObject::connect(&pollTimer, &QTimer::timeout, &templates, [&lock, &leave] {
        if (lock.isWanted())
            leave();
    });
    pollTimer.start(PollMs);
    templates.obtain(*runner, &templates, [](const QString&, const Reason&) {});
    QObject::connect(&templates, &Templates::idle, QCoreApplication::instance(), &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QCoreApplication::exec();
    return 0;
}
