#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/Runners.h"

class WineCommand;

/// Makes a Wine prefix in an empty directory with the runner's own wineboot, and leaves it at rest: registry
/// written, no process running, so that the directory may be renamed. Takes 5 to 20 s, in child processes.
/// Nobody has to wait for it: then it works at low priority, can be paused for as long as need be, and goes
/// on at the ordinary priority when somebody does.
class PrefixBuilder : public QObject {
    Q_OBJECT

public:
    enum class Priority { Ordinary, Low };

    PrefixBuilder(const Runner& runner, const QString& directory, QObject* parent = nullptr);

    void start(Priority priority = Priority::Ordinary);

    /// Stops Wine's processes where they are, and lets them go on. The last second, in which Wine ends and
    /// writes its registry, is not stopped.
    void pause();
    void resume();
    /// Goes on, with the priority of everything else.
    void raise();

    /// How much of the work is done, in percent. Counts the files that Wine has put into the prefix.
    int progress() const;
    static constexpr int BootedPercent = 95;

    /// Ends the work; finished() follows with a sentence.
    void cancel();

    /// Empty if the directory holds a whole prefix, else a sentence that names what is missing.
    static QString check(const QString& directory);

Q_SIGNALS:
    /// Exactly once; an empty sentence is success.
    void finished(const QString& sentence);

private:
    enum class State { Booting, Stopping };

    /// Now, and some more times for what is just being started.
    void lookAgain(void (PrefixBuilder::*act)());
    void stopProcesses();
    void continueProcesses();
    void raiseProcesses();
    void onBooted(const QString& sentence);
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
    QTimer m_looks;  ///< for processes that were just being started
    int m_looksLeft = 0;
};
