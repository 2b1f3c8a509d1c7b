#include "core/BackendVersion.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDebug>

#include "core/base/BuildInfo.h"

namespace {

const char ServiceName[] = "com.lumora.LumoraWineLauncher";
const char ConnectionName[] = "backend-version";
constexpr int TimeoutMs = 10000;  // the end of the process waits for this thread

QDBusMessage managerCall(const QString& method) {
    return QDBusMessage::createMethodCall(ServiceName, "/com/lumora/Manager", "com.lumora.Manager", method);
}

/// Whether an error says that there is no service to ask, not that it could not answer.
bool isAbsent(const QDBusMessage& reply) {
    const QString name = reply.errorName();
    return name == QDBusError::errorString(QDBusError::ServiceUnknown) ||
           name == QDBusError::errorString(QDBusError::Disconnected) ||
           name.startsWith("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           name.startsWith("org.freedesktop.DBus.Error.Spawn.");
}

void compareVersions(const QDBusConnection& bus) {
    // The call itself starts a service that does not run yet.
    const QDBusMessage reply = bus.call(managerCall("GetVersion"), QDBus::Block, TimeoutMs);
    if (!bus.isConnected() || isAbsent(reply)) {
        qWarning() << "Could not connect to the D-Bus service.";
        return;
    }
    if (reply.type() != QDBusMessage::ReplyMessage) {
        qWarning() << "Failed to get D-Bus version:" << reply.errorMessage();
        return;
    }
    const QString version = reply.arguments().value(0).toString();
    if (version == BuildInfo::version()) {
        qDebug() << "D-Bus version:" << version;
        return;
    }
    qWarning() << "D-Bus version mismatch. Expected:" << BuildInfo::version() << "Actual:" << version;
    bus.call(managerCall("Quit"), QDBus::Block, TimeoutMs);
}

}  // namespace

void checkBackendVersion() {
    compareVersions(QDBusConnection::connectToBus(QDBusConnection::SessionBus, ConnectionName));
    QDBusConnection::disconnectFromBus(ConnectionName);
}
