#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <map>
#include <memory>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/wine/ProcessEnd.h"
#include "bottleservice/wine/Processes.h"

/// Follows the programs that the launch script has started with an id, each to the end of the last process
/// that carries its mark. LaunchRecord tells how the script lets it know; its file stays until the program
/// has ended, so that an end is also told that came while no service ran.
class ProgramWatch : public QObject {
    Q_OBJECT

public:
    explicit ProgramWatch(const BottleStore& store, QObject* parent = nullptr);

    /// Reads what is there and stays awake for more.
    void start();

    bool isIdle() const { return m_runs.empty(); }

Q_SIGNALS:
    /// Once when nothing of the program runs any more in its bottle.
    void exited(const QString& bottle, const QString& programId);

private:
    /// Two launches of one program in one bottle cannot be told apart and end together.
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
    void look(const Key& key, bool isLast);

    BottleStore m_store;
    QString m_directory;
    QFileSystemWatcher m_watcher;
    Processes m_processes;
    QStringList m_known;
    std::map<Key, Run> m_runs;
};
