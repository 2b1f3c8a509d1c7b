#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/Runners.h"

class WineCommand;

/// Makes a Wine prefix in an empty directory with the runner's own wineboot. Afterwards the registry is
/// written and no process runs, so that the directory may be renamed. Takes 5 to 20 s, in child processes. At
/// low priority, when nobody waits for the prefix, it can be paused, and raised to the ordinary priority.
/// Owned by Templates; lives in the main thread.
class PrefixBuilder : public QObject {
    Q_OBJECT

public:
    enum class Priority { Ordinary, Low };

    PrefixBuilder(const Runner& runner, const QString& directory, QObject* parent = nullptr);

    void start(Priority priority = Priority::Ordinary);

    /// Stops Wine's processes (SIGSTOP), and lets them continue. The last second, in which Wine ends and
    /// writes its registry, is not stopped.
    void pause();
    void resume();
    /// Continues at the ordinary priority.
    void raise();

    /// The progress in percent, by the number of files that Wine has put into the prefix.
    int progress() const;
    static constexpr int BootedPercent = 95;

    /// Ends the work; finished() follows with an error text.
    void cancel();

    /// Returns a file that the directory lacks, empty if it holds a complete prefix.
    static QString missingPart(const QString& directory);
    /// The same as an error text.
    static QString check(const QString& directory);

Q_SIGNALS:
    /// Exactly once; an empty text is success.
    void finished(const QString& errorText);

private:
    enum class State { Booting, Stopping };

    /// Acts now and a few more times, for processes that are just being started.
    void actRepeatedly(void (PrefixBuilder::*act)());
    void stopProcesses();
    void continueProcesses();
    void raiseProcesses();
    void onBooted(const QString& errorText);
    void onStopped(bool clean);

    Runner m_runner;
    QString m_directory;
    WineCommand* m_boot = nullptr;
    QString m_fault;
    bool m_cancelled = false;
    State m_state = State::Booting;
    bool m_isLow = false;
    bool m_isPaused = false;
    int m_expectedFiles = 0;
    Processes m_processes;
    QTimer m_repeat;  ///< for processes that were just being started
    int m_repeatsLeft = 0;
};
