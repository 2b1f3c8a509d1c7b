#pragma once

#include <QString>
#include <QTemporaryDir>

#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"

namespace TestSupport {

/// A session bus of the test's own. Make it before the program first asks for QDBusConnection::sessionBus():
/// its address stands in DBUS_SESSION_BUS_ADDRESS while the object lives. Services can be activated from
/// servicesDir().
class PrivateBus {
public:
    PrivateBus();

    bool isRunning() const { return m_daemon.state() == QProcess::Running; }
    QString address() const { return m_address; }
    QString servicesDir() const { return m_dir.path() + "/services"; }

    /// Lets the bus start the command when the name is first called.
    void addActivatableService(const QString& name, const QString& command);
    /// Ends the bus, as when a session goes down under a running program.
    void stop();

private:
    QTemporaryDir m_dir;
    QString m_address;
    EnvironmentGuard m_environment;
    ChildProcess m_daemon;
};

}  // namespace TestSupport
