#include "support/StoreServerProcess.h"

namespace TestSupport {

bool StoreServerProcess::start(const QStringList& arguments) {
    stop();
    m_log.clear();
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(m_program, arguments + QStringList{"--listen", "127.0.0.1:0"});
    const bool isListening = waitUntil([this] {
        m_log += m_process.readAll();
        return m_log.contains("listening on ") && m_log.endsWith('\n');
    });
    m_address = m_log.mid(m_log.lastIndexOf("http://")).trimmed();
    return isListening;
}

QString StoreServerProcess::listedReports(const QString& directory) const {
    return runProcess(m_program, {"--reports", directory, "--list-reports"}).output;
}

}  // namespace TestSupport
