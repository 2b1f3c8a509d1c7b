#pragma once

#include <QStringList>

#include "support/ChildProcess.h"

namespace TestSupport {

/// Runs the program launch-probe on a file and collects its lines without their times.
class LaunchProbe {
public:
    explicit LaunchProbe(const QStringList& arguments);

    bool waitFor(const QString& line, int timeoutMs = 90000);
    /// The exit status: 0 success, 1 failure, 2 a repair was offered and not taken, 4 stopped; -1 when it
    /// does not end in time.
    int waitForEnd(int timeoutMs = 90000);
    /// The lines so far, without elapsed seconds, lines of the log and percentages.
    QStringList lines() const { return m_lines; }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

private:
    void read();

    ChildProcess m_process;
    QStringList m_lines;
};

}  // namespace TestSupport
