#include "support/XSession.h"

namespace TestSupport {

XSession::XSession() {
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "640x480x24", "-nolisten", "tcp", "-noreset"});
    const QString number = m_server.readLineWithin();
    if (number.isEmpty())
        return;
    m_display = ":" + number;
    m_environment.set("DISPLAY", m_display.toLatin1());
}

}  // namespace TestSupport
