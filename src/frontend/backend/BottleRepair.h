#pragma once

#include <QDBusAbstractInterface>

#include "backend/BusCall.h"
#include "fenk/system/Singleton.h"

/// The client of the background service's interface for repairs; holds no state. Lives in the GUI thread.
/// com.lumora.Manager.Repair.xml says what the answers hold.
class BottleRepair : public QDBusAbstractInterface, public Fenk::Singleton<BottleRepair> {
    Q_OBJECT
    friend class Fenk::Singleton<BottleRepair>;

public:
    /// What the installation of the components would bring; the answer is an array.
    void describeDependencies(const QString& bottle, const QStringList& names, QObject* context,
                              const BusCall::Handler& handler);
    /// The same for a Wine.
    void describeRunner(const QString& bottle, const QString& name, QObject* context,
                        const BusCall::Handler& handler);
    /// Lets the service take an installer that the user has chosen. The path is absolute and leads through no
    /// link.
    void takeFile(const QString& bottle, const QString& dependency, const QString& path, QObject* context,
                  const BusCall::Handler& handler);
    /// The answer is an object: "installed" and "supported", names of runners on which 32-bit programs run.
    void runnersFor32Bit(QObject* context, const BusCall::Handler& handler);
    /// What the bottle has lost of Wine's files: an object with "count" and some paths as "files". Fails
    /// after some seconds without an answer.
    void damage(const QString& bottle, QObject* context, const BusCall::Handler& handler);
    /// Brings that back. The answer is an object: "ok", and "mended" (a number) or "error" and, where
    /// programs run in the bottle, their names as "busy".
    void renew(const QString& bottle, QObject* context, const BusCall::Handler& handler);
    void cancelRenewal(const QString& bottle);

private:
    BottleRepair();
    void call(const char* method, int timeoutMs, const QVariantList& arguments, QObject* context,
              const BusCall::Handler& handler);
};
