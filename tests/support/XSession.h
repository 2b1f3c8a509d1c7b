#pragma once

#include <QString>

#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"

namespace TestSupport {

/// A virtual screen with a window manager, on a free display number that stands in $DISPLAY while the object
/// lives. Make it before a QGuiApplication that is to show windows there.
class XSession {
public:
    explicit XSession(const QString& screen = "1280x800x24", bool hasWindowManager = true);

    /// False when the X server or the window manager could not be started; such a test skips itself.
    bool isRunning() const { return m_running; }
    QString display() const { return m_display; }

private:
    QString m_display;
    bool m_running = false;
    EnvironmentGuard m_environment;
    ChildProcess m_server;
    ChildProcess m_windowManager;  // goes before the server
};

}  // namespace TestSupport
