#include "e2e/LaunchProbe.h"

#include <QDebug>
#include <QRegularExpression>

namespace TestSupport {

LaunchProbe::LaunchProbe(const QStringList& arguments) {
    m_process.setVariable("QT_QPA_PLATFORM", "offscreen");
    m_process.setVariable("LANGUAGE", "en");
    QObject::connect(&m_process, &QProcess::readyRead, &m_process, [this] { read(); });
    m_process.start(TEST_BINARY_DIR "/tools/launch-probe", arguments);
}

void LaunchProbe::read() {
    static const QRegularExpression passing("in \\d+ seconds$|^msg 0 |\\d%$");
    while (m_process.canReadLine()) {
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed().section(' ', 1);
        if (!passing.match(line).hasMatch())
            m_lines += line;
    }
}

bool LaunchProbe::waitFor(const QString& line, int timeoutMs) {
    waitUntil([&] { return m_lines.contains(line) || !isRunning(); }, timeoutMs);
    if (!m_lines.contains(line))
        qWarning().noquote() << "no" << line << "in" << m_lines.join("\n  ");
    return m_lines.contains(line);
}

int LaunchProbe::waitForEnd(int timeoutMs) {
    if (!waitUntil([this] { return !isRunning(); }, timeoutMs)) {
        qWarning().noquote() << "does not end:" << m_lines.join("\n  ");
        return -1;
    }
    read();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

}  // namespace TestSupport
