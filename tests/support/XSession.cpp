#include "support/XSession.h"

#include "support/WindowFinder.h"

namespace TestSupport {

XSession::XSession(const QString& screen) {
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp", "-noreset"});
    const QString number = m_server.readFirstLine();
    if (number.isEmpty())
        return;
    m_display = ":" + number;
    m_environment.set("DISPLAY", m_display.toLatin1());

    m_windowManager.setVariable("DISPLAY", m_display);
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    m_windowManager.start("openbox", {"--sm-disable"});
    const WindowFinder finder(m_display);
    m_running = waitUntil([&] { return finder.hasWindowManager(); }, 10000);
}

}  // namespace TestSupport
