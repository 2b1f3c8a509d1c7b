#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <map>
#include <memory>
#include <set>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/wine/LaunchRecords.h"
#include "bottleservice/wine/ProcessEnd.h"
#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/RunOwners.h"

/// Knows which of the entered programs run, however they were started (RunOwners decides which program a
/// process belongs to). Checks again when a launch script writes a file (LaunchRecord) and when a process
/// ends; while something runs, also regularly, since a program may start another. Stores nothing: a new
/// service finds out by itself what runs. Owned by ProcessRequests; lives in the main thread.
class RunMonitor : public QObject {
    Q_OBJECT

public:
    using Key = std::pair<QString, QString>;  ///< bottle, program
    using Runs = std::map<Key, std::set<pid_t>>;

    explicit RunMonitor(const BottleStore& store, QObject* parent = nullptr);

    void start();
    /// Checks again soon, for instance after the programs of a bottle have changed.
    void checkSoon();
    /// Checks now and returns the running programs with their processes; a program without processes is still
    /// being started by its launch script.
    const Runs& check();
    /// No program runs, and no launch script.
    bool isIdle() const { return m_runs.empty() && m_claims == 0; }

Q_SIGNALS:
    void started(const QString& bottle, const QString& programId);
    void ended(const QString& bottle, const QString& programId);

private:
    Runs find(std::set<pid_t>* alive);
    const RunOwners* ownersIn(const QString& bottle);
    QString bottleOf(const Processes::Entry& process) const;
    void change(const Runs& now);
    void follow(const std::set<pid_t>& alive);
    void onScript();

    BottleStore m_store;
    Processes m_processes;
    QFileSystemWatcher m_watcher;
    QTimer m_soon;
    QTimer m_regular;
    int m_quickChecks = 0;  ///< that are left after a script has written a file
    bool m_isMissing = false;
    int m_claims = 0;
    Runs m_runs;
    std::map<pid_t, std::unique_ptr<ProcessEnd>> m_followed;
    std::map<QString, RunOwners> m_owners;  ///< by bottle, for those with processes or launch scripts
};
