#pragma once

#include <QPointer>
#include <QStringList>
#include <QVector>
#include <functional>

class EnvInitBanner;
class QObject;
class QProcess;

/// A script that sets up something for all bottles, and the banner that shows its run. At most one run at a
/// time. The script is never killed, since work that is half done may be worse than none: it goes on after
/// its banner is closed and after Cellarix has ended. GUI thread; must not be deleted while it has a process.
struct BottleEnvScript {
    QPointer<EnvInitBanner> banner;
    QProcess* process = nullptr;
    bool running = false;
    QString scriptPath;
    QStringList arguments;
    QString title;
    QString completedTitle;
    QString completedMessage;
    QVector<std::function<void()>> waiting = {};  ///< for its end

    /// Runs the script with "-c", which exits with 0 if it has nothing to do. Blocks, for 30000 ms at most.
    /// False as well if the script is missing, cannot be run or does not exit in time.
    bool needsRun() const;

    /// Runs the script, if needsRun() or `force`, and returns when its banner is closed. If the banner of an
    /// earlier run still exists, only shows that one. The banner of a failed run offers another one. When
    /// this returns, `running` is true if the user closed the banner before the script exited.
    void start(bool force);

    /// Calls `then` when the script does not run any more, at once or at its end, unless `context` is
    /// destroyed first.
    void whenEnded(QObject* context, const std::function<void()>& then);

private:
    void launch();
    void show(const QStringList& lines) const;
    void end(bool started);
};

/// Renews the templates of bottles after an update of Wine.
BottleEnvScript& envInitScript();
/// Prepares the Proton runners.
BottleEnvScript& protonInitScript();
