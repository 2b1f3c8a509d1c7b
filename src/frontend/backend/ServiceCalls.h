#pragma once

#include <QDBusAbstractInterface>
#include <QDBusConnection>
#include <QVariantList>
#include <functional>
#include <limits>

#include "backend/BusResult.h"

/// One object of the background service, and the four ways to call its methods. A signal that a derived class
/// declares arrives from the bus when name and argument types are those of the object's signal. All calls of
/// an object have the same time-out in ms. Without a session bus each call fails at once. block() and fire()
/// may be called from any thread, watch() and loop() from the object's thread.
class ServiceCalls : public QDBusAbstractInterface {
public:
    using Handler = std::function<void(const BusResult&)>;

protected:
    static constexpr int LongTimeoutMs = 3600000;  ///< the call may wait behind a long Wine operation
    static constexpr int NoTimeoutMs =
        std::numeric_limits<int>::max();     ///< ends with the service at the latest
    static constexpr int BusTimeoutMs = -1;  ///< the bus library's own, 25 s

    /// part is the last part of the object's path and interface.
    ServiceCalls(const QString& part, int timeoutMs,
                 const QDBusConnection& bus = QDBusConnection::sessionBus());

    /// Waits in the caller's thread without an event loop.
    BusResult block(const QString& method, const QVariantList& arguments = {},
                    BusReply::Wanted wanted = BusReply::Wanted::Text) const;

    /// Sends without waiting. Reply and error are dropped.
    void fire(const QString& method, const QVariantList& arguments) const;

    /// Returns at once. The handler runs once in context's thread when the reply or the error has come, and
    /// never when context is destroyed first. This object may be destroyed meanwhile.
    void watch(const QString& method, const QVariantList& arguments, QObject* context, const Handler& handler,
               BusReply::Wanted wanted = BusReply::Wanted::Text) const;

    /// Waits with a running event loop: other slots run on top of the caller meanwhile. When owner (which may
    /// be null) is destroyed in one of them, or the program quits, the wait ends and the result is abandoned.
    BusResult loop(const QString& method, const QVariantList& arguments, QObject* owner) const;

private:
    QDBusMessage message(const QString& method, const QVariantList& arguments) const;
    QDBusPendingCall send(const QString& method, const QVariantList& arguments) const;
};
