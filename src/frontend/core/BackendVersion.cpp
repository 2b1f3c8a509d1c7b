#include "core/BackendVersion.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDebug>

#include "core/base/BuildInfo.h"

namespace {

const char ServiceName[] = "com.lumora.LumoraWineLauncher";
const char ConnectionName[] = "backend-version";

void compareVersions(const QDBusConnection& bus) {
    // An interface object counts only services that run already.
    if (bus.interface())
        bus.interface()->startService(ServiceName);
    QDBusInterface manager(ServiceName, "/com/lumora/Manager", "com.lumora.Manager", bus);
    if (!manager.isValid()) {
        qWarning() << "Could not connect to the D-Bus service.";
        return;
    }
    const QDBusReply<QString> version = manager.call("GetVersion");
    if (!version.isValid()) {
        qWarning() << "Failed to get D-Bus version:" << version.error().message();
        return;
    }
    if (version.value() == BuildInfo::version()) {
        qDebug() << "D-Bus version:" << version.value();
        return;
    }
    qWarning() << "D-Bus version mismatch. Expected:" << BuildInfo::version() << "Actual:" << version.value();
    manager.call("Quit");
}

}  // namespace

void checkBackendVersion() {
    // On a connection of its own: what the shared one remembers about the service's owner may be older than
    // the service that has just been started.
    compareVersions(QDBusConnection::connectToBus(QDBusConnection::SessionBus, ConnectionName));
    QDBusConnection::disconnectFromBus(ConnectionName);
}
