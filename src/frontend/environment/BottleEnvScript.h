#pragma once

#include <QPointer>
#include <QStringList>

class EnvInitBanner;
class QProcess;

/// A script that sets up what all bottles, or all of a kind, stand on, and the banner that shows it. At most
/// one run at a time. The script outlives the banner, and the process too: it is never killed, since half of
/// its work may be worse than none. Main thread only; a record that has a process must not go.
struct BottleEnvScript {
    QPointer<EnvInitBanner> banner;
    QProcess* process = nullptr;
    bool running = false;
    QString scriptPath;
    QStringList arguments;
    QString title;
    QString completedTitle;
    QString completedMessage;

    /// Asks the script, with "-c", whether it has something to do. Blocks for 30000 ms at most; a script that
    /// is missing, cannot be run or gives no answer in time has nothing to do.
    bool needsRun() const;

    /// Runs the script, if it has something to do or `force`, and shows the banner until it is closed. While
    /// there is a banner of an earlier run, only shows that one again. A run that failed can be made again
    /// from its banner. Afterwards `running` tells whether the user closed the banner before the script's
    /// end.
    void start(bool force);

private:
    void launch();
    void show(const QStringList& lines) const;
    void end(bool started);
};

/// Makes the templates of bottles anew after an update of Wine.
BottleEnvScript& envInitScript();
/// Makes the Proton runners ready to be used.
BottleEnvScript& protonInitScript();
