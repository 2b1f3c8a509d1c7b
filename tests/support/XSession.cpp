#include "support/XSession.h"

#include "support/WindowFinder.h"

namespace TestSupport {

XSession::XSession(const QString& screen, bool hasWindowManager) {
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp", "-noreset"});
    const QString number = m_server.readLineWithin();
    if (number.isEmpty())
        return;
    m_display = ":" + number;
    m_environment.set("DISPLAY", m_display.toLatin1());

    if (!hasWindowManager) {
        m_running = true;
        return;
    }
    m_windowManager.setVariable("DISPLAY", m_display);
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    // It announces itself on the root window long before it manages windows, and one that appears in between
    // is lost; the startup command runs when it is through with that.
    m_windowManager.start("openbox", {"--sm-disable", "--startup", "echo ready"});
    QString line;
    do
        line = m_windowManager.readLineWithin();
    while (!line.isEmpty() && line != "ready");  // it talks there itself, too
    m_running = line == "ready" && WindowFinder(m_display).hasWindowManager();
}

}  // namespace TestSupport
