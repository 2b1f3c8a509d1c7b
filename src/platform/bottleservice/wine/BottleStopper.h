#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>
#include <functional>

#include "bottleservice/wine/Processes.h"

class WineCommand;

/// Ends everything that runs in a prefix: first through its wineserver, which saves the registry, then by
/// SIGKILL. Takes about 0.1 s as a rule and never more than about 4 s. Lives in the main thread.
class BottleStopper : public QObject {
    Q_OBJECT

public:
    /// The path of wineserver may be empty; then only signals are used.
    BottleStopper(const QString& prefix, const QString& wineserver, QObject* parent = nullptr);

    /// Sets a function that returns the running launch scripts of the bottle, which are ended too: they may
    /// be about to start a program.
    void setLaunchers(std::function<QVector<pid_t>()> launchers) { m_launchers = std::move(launchers); }

    /// Also ends native programs that were started from Wine; for a prefix that is only the service's.
    void setKind(Processes::Kind kind) { m_kind = kind; }

    void start();

Q_SIGNALS:
    /// Exactly once. Clean means that no process is left.
    void finished(bool clean);

private:
    void killRest();

    QString m_prefix;
    QString m_wineserver;
    Processes m_processes;
    Processes::Kind m_kind = Processes::Kind::Wine;
    std::function<QVector<pid_t>()> m_launchers = [] { return QVector<pid_t>(); };
    int m_emptyChecks = 0;
    WineCommand* m_command = nullptr;
    QTimer m_poll;
    QElapsedTimer m_elapsed;
};
