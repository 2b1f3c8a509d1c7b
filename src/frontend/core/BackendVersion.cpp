#include "core/BackendVersion.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDebug>
#include <QEventLoop>
#include <QMutex>

#include "backend/ServiceNames.h"
#include "core/base/BuildInfo.h"

namespace {

const char ConnectionName[] = "backend-version";
constexpr int TimeoutMs = 10000;

QMutex mutex;
QEventLoop* waiting = nullptr;  ///< the loop that waits for an answer, if there is one
bool isAbandoned = false;

QDBusMessage managerCall(const QString& method) {
    return QDBusMessage::createMethodCall(ServiceNames::Service, ServiceNames::Path, ServiceNames::Interface,
                                          method);
}

/// Whether an error says that there is no service to ask, not that it could not answer.
bool isAbsent(const QDBusMessage& reply) {
    const QString name = reply.errorName();
    return name == QDBusError::errorString(QDBusError::ServiceUnknown) ||
           name == QDBusError::errorString(QDBusError::Disconnected) ||
           name.startsWith("org.freedesktop.DBus.Error.NameHasNoOwner") ||
           name.startsWith("org.freedesktop.DBus.Error.Spawn.");
}

/// An invalid message when the wait has been abandoned.
QDBusMessage ask(const QDBusConnection& bus, const QString& method) {
    QEventLoop loop;
    QDBusPendingCallWatcher watcher(bus.asyncCall(managerCall(method), TimeoutMs));
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    {
        const QMutexLocker lock(&mutex);
        if (isAbandoned)
            return {};
        waiting = &loop;
    }
    if (!watcher.isFinished())
        loop.exec();
    const QMutexLocker lock(&mutex);
    waiting = nullptr;
    return watcher.isFinished() ? watcher.reply() : QDBusMessage();
}

void compareVersions(const QDBusConnection& bus) {
    // The call itself starts a service that does not run yet.
    const QDBusMessage reply = ask(bus, "GetVersion");
    if (reply.type() == QDBusMessage::InvalidMessage && bus.isConnected())
        return;
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
    ask(bus, "Quit");
}

}  // namespace

void checkBackendVersion() {
    compareVersions(QDBusConnection::connectToBus(QDBusConnection::SessionBus, ConnectionName));
    QDBusConnection::disconnectFromBus(ConnectionName);
}

void abandonBackendVersion() {
    const QMutexLocker lock(&mutex);
    isAbandoned = true;
    if (waiting)
        QMetaObject::invokeMethod(waiting, &QEventLoop::quit, Qt::QueuedConnection);
}
