#include "backend/BusCall.h"

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QPointer>

namespace {

QDBusMessage message(const QDBusAbstractInterface& proxy, const QString& method,
                     const QVariantList& arguments) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(proxy.service(), proxy.path(), proxy.interface(), method);
    call.setArguments(arguments);
    return call;
}

QDBusPendingCall send(const QDBusAbstractInterface& proxy, const QString& method,
                      const QVariantList& arguments) {
    return proxy.connection().asyncCall(message(proxy, method, arguments), proxy.timeout());
}

}  // namespace

// The proxy's own call() keeps the last error in the proxy, which two threads must not do at once.
BusResult BusCall::block(const QDBusAbstractInterface& proxy, const QString& method,
                         const QVariantList& arguments, BusReply::Wanted wanted) {
    const QDBusMessage call = message(proxy, method, arguments);
    return BusReply::fromMessage(proxy.connection().call(call, QDBus::Block, proxy.timeout()), wanted);
}

void BusCall::fire(const QDBusAbstractInterface& proxy, const QString& method,
                   const QVariantList& arguments) {
    send(proxy, method, arguments);
}

void BusCall::watch(const QDBusAbstractInterface& proxy, const QString& method, const QVariantList& arguments,
                    QObject* context, const Handler& handler, BusReply::Wanted wanted) {
    const QDBusPendingCall call = send(proxy, method, arguments);
    // Without a bus the call has failed already, and its watcher never tells.
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

BusResult BusCall::loop(const QDBusAbstractInterface& proxy, const QString& method,
                        const QVariantList& arguments, QObject* owner) {
    const QPointer<QObject> guard(owner);
    QDBusPendingCallWatcher watcher(send(proxy, method, arguments));
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
