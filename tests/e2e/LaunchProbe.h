#pragma once

#include <QStringList>

#include "support/ChildProcess.h"

namespace TestSupport {

/// launch-probe on a file: the executor alone, as a process of its own, whose lines are collected without
/// their times.
class LaunchProbe {
public:
    explicit LaunchProbe(const QStringList& arguments);

    bool waitFor(const QString& line, int timeoutMs = 90000);
    /// The exit status: 0 success, 1 failure, 2 a repair was offered and not taken, 4 stopped; -1 when it
    /// does not end in time.
    int waitForEnd(int timeoutMs = 90000);
    /// Lines so far but the seconds that pass, the log's own lines and the percentages.
    QStringList lines() const { return m_lines; }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

private:
    void read();

    ChildProcess m_process;
    QStringList m_lines;
};

/// Lets the service take the files of components from a directory, which is made, and know these recipes
/// (the steps as JSON text).
QString useMirror(const QMap<QString, QByteArray>& recipes);

}  // namespace TestSupport
