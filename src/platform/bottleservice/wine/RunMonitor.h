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

/// Knows which entered programs run, whoever has started them (RunOwners says what belongs to whom). Launch
/// scripts wake it up by the files that they write (LaunchRecord), and the kernel when a process ends; only
/// while something runs it also looks by itself, since a program may start another. Keeps nothing on disk:
/// what runs is found out anew at the start.
class RunMonitor : public QObject {
    Q_OBJECT

public:
    using Key = std::pair<QString, QString>;  ///< bottle, program
    using Runs = std::map<Key, std::set<pid_t>>;

    explicit RunMonitor(const BottleStore& store, QObject* parent = nullptr);

    void start();
    /// Something may have changed, such as the programs of a bottle.
    void lookSoon();
    /// What runs at this moment, with the processes; without any while a launch script has started none.
    const Runs& look();
    /// No program runs, and no launch script lives.
    bool isIdle() const { return m_runs.empty() && m_claims == 0; }

Q_SIGNALS:
    void started(const QString& bottle, const QString& programId);
    void ended(const QString& bottle, const QString& programId);

private:
    Runs find(std::set<pid_t>* alive);
    QString bottleOf(const Processes::Entry& process) const;
    void change(const Runs& now);
    void follow(const std::set<pid_t>& alive);
    void onScript();

    BottleStore m_store;
    Processes m_processes;
    QFileSystemWatcher m_watcher;
    QTimer m_soon;
    QTimer m_regular;
    int m_quickLooks = 0;  ///< that are left after a script has written a file
    bool m_isMissing = false;
    int m_claims = 0;
    Runs m_runs;
    std::map<pid_t, std::unique_ptr<ProcessEnd>> m_followed;
};
