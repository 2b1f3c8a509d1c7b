#pragma once

#include <QDBusAbstractInterface>

#include "backend/BusCall.h"
#include "fenk/Singleton.h"

/// The client of the background service's interface for repairs; holds no state. Lives in the GUI thread.
/// com.lumora.Manager.Repairs.xml says what the answers hold.
class BottleRepairs : public QDBusAbstractInterface, public Fenk::Singleton<BottleRepairs> {
    Q_OBJECT
    friend class Fenk::Singleton<BottleRepairs>;

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

private:
    BottleRepairs();
};
