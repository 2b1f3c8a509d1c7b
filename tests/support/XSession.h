#pragma once

#include <QString>

#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"

namespace TestSupport {

/// A virtual screen without a window manager, on a free display number that stands in $DISPLAY while the
/// object lives.
class XSession {
public:
    XSession();

    /// False when the X server could not be started; such a test skips itself.
    bool isRunning() const { return !m_display.isEmpty(); }
    QString display() const { return m_display; }

private:
    QString m_display;
    EnvironmentGuard m_environment;
    ChildProcess m_server;
};

}  // namespace TestSupport
