#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <map>
#include <memory>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/wine/ProcessEnd.h"
#include "bottleservice/wine/Processes.h"

/// Reports the end of programs that the launch script has started with an id: when the last process with the
/// program's id has ended. The script's record (LaunchRecord) stays until then, so that an end while no
/// service runs is reported by the next one. Owned by ProcessRequests; lives in the main thread.
class ProgramWatch : public QObject {
    Q_OBJECT

public:
    explicit ProgramWatch(const BottleStore& store, QObject* parent = nullptr);

    /// Reads the existing records and watches for new ones.
    void start();

    bool isIdle() const { return m_runs.empty(); }

Q_SIGNALS:
    /// Once, when no process of the program runs in its bottle any more.
    void exited(const QString& bottle, const QString& programId);

private:
    /// Two launches of the same program in a bottle cannot be told apart; they end together.
    struct Run {
        QString bottlePath;
        QString program;
        QStringList files;
        std::map<pid_t, std::unique_ptr<ProcessEnd>> alive;
    };
    using Key = std::pair<QString, QString>;

    void readDirectory();
    void readFile(const QString& path);
    void follow(const Key& key, pid_t pid);
    void check(const Key& key, bool isLast);

    BottleStore m_store;
    QString m_directory;
    QFileSystemWatcher m_watcher;
    Processes m_processes;
    QStringList m_known;
    std::map<Key, Run> m_runs;
};
