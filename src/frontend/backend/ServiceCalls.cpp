#include "backend/ServiceCalls.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QPointer>

#include "backend/ServiceNames.h"

ServiceCalls::ServiceCalls(const QString& part, int timeoutMs, const QDBusConnection& bus)
    : QDBusAbstractInterface(ServiceNames::Service, QString(ServiceNames::Path) + '/' + part,
                             (QString(ServiceNames::Interface) + '.' + part).toLatin1().constData(), bus,
                             nullptr) {
    setTimeout(timeoutMs);
}

QDBusMessage ServiceCalls::message(const QString& method, const QVariantList& arguments) const {
    QDBusMessage call = QDBusMessage::createMethodCall(service(), path(), interface(), method);
    call.setArguments(arguments);
    return call;
}

QDBusPendingCall ServiceCalls::send(const QString& method, const QVariantList& arguments) const {
    return connection().asyncCall(message(method, arguments), timeout());
}

// QDBusAbstractInterface::call() stores the last error in the object, which two threads must not do at once.
BusResult ServiceCalls::block(const QString& method, const QVariantList& arguments,
                              BusReply::Wanted wanted) const {
    const QDBusMessage call = message(method, arguments);
    return BusReply::fromMessage(connection().call(call, QDBus::Block, timeout()), wanted);
}

void ServiceCalls::fire(const QString& method, const QVariantList& arguments) const {
    send(method, arguments);
}

void ServiceCalls::watch(const QString& method, const QVariantList& arguments, QObject* context,
                         const Handler& handler, BusReply::Wanted wanted) const {
    const QDBusPendingCall call = send(method, arguments);
    // Without a bus the call has failed already, and its watcher never emits finished().
    if (call.isFinished()) {
        QMetaObject::invokeMethod(
            context, [=] { handler(BusReply::fromMessage(call.reply(), wanted)); }, Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, handler, wanted] {
        watcher->deleteLater();
        handler(BusReply::fromMessage(watcher->reply(), wanted));
    });
}

BusResult ServiceCalls::loop(const QString& method, const QVariantList& arguments, QObject* owner) const {
    const QPointer<QObject> guard(owner);
    QDBusPendingCallWatcher watcher(send(method, arguments));
    QEventLoop wait;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &wait, &QEventLoop::quit,
                     Qt::DirectConnection);
    if (owner)
        QObject::connect(owner, &QObject::destroyed, &wait, &QEventLoop::quit, Qt::DirectConnection);
    if (!watcher.isFinished())
        wait.exec();

    if ((owner && !guard) || !watcher.isFinished()) {
        BusResult result;
        result.errorMessage = "abandoned";
        result.abandoned = true;
        return result;
    }
    return BusReply::fromMessage(watcher.reply());
}
