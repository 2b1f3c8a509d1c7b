#pragma once

#include <QString>
#include <QTemporaryDir>

#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"

namespace TestSupport {

/// A session bus of the test's own. Make it before the program first asks for QDBusConnection::sessionBus():
/// its address stands in DBUS_SESSION_BUS_ADDRESS while the object lives. It starts only the services that
/// have their files in the given directory, and without one none.
class PrivateBus {
public:
    explicit PrivateBus(const QString& services = {});

    QString address() const { return m_address; }
    /// Ends the bus, as when a session goes down under a running program.
    void stop() { m_daemon.stop(); }

private:
    QTemporaryDir m_dir;
    QString m_address;
    EnvironmentGuard m_environment;
    ChildProcess m_daemon;
};

}  // namespace TestSupport
