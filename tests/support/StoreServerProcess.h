#pragma once

#include "support/ChildProcess.h"

namespace TestSupport {

/// The built store server on a free port of this machine. `program` is the path of cellarix-store-server.
class StoreServerProcess {
public:
    explicit StoreServerProcess(const QString& program) : m_program(program) {}

    /// Waits until it listens; false if it does not, for which log() has the reason. Ends the one before.
    bool start(const QStringList& arguments);
    void stop() { m_process.stop(); }

    /// "http://127.0.0.1:12345"
    QString address() const { return m_address; }
    QByteArray log() const { return m_log; }
    /// What it prints of a directory of reports.
    QString listedReports(const QString& directory) const;

private:
    QString m_program;
    ChildProcess m_process;
    QString m_address;
    QByteArray m_log;
};

}  // namespace TestSupport
