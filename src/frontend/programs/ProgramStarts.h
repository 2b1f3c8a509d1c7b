#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include "backend/PendingWork.h"
#include "fenk/system/Singleton.h"
#include "programs/Program.h"

class WineLauncher;
struct BusResult;

/// Starts stored programs and follows each start until its launch script or its program ends. Tells
/// ProgramRuns what is starting and FailedStarts what has failed. A started program goes on when this process
/// ends. Needs no widget. One for the process; GUI thread only; no call here waits.
class ProgramStarts : public QObject, public Fenk::Singleton<ProgramStarts> {
    Q_OBJECT
    friend class Fenk::Singleton<ProgramStarts>;

public:
    /// Does nothing for a program that runs or is being started.
    void start(const Program& program, bool inTerminal);
    /// Cancels a start that still waits for the service; otherwise asks the service to end the program.
    /// ProgramRuns::changed tells when it has ended. Works for programs that others have started, too.
    void stop(const ProgramRef& ref);

Q_SIGNALS:
    /// The program could not be started and stop() was not called; the text is for the user.
    void failed(const QString& uuid, const QString& errorText);

private:
    struct Launch {
        QPointer<WineLauncher> launcher;
        PendingWork::Hold recordHold;  ///< until the bottle's record has come and the script is started
        bool isTimed = true;           ///< until the first window or the end of the wait for it
        bool isUp = false;             ///< the first window has come, or the wait for it is over
        bool isStopped = false;        ///< by the user
    };

    ProgramStarts();
    void startScript(WineLauncher* launcher, const Program& program, const BusResult& bottle);
    /// `errorText` says why the program could not be started; empty when it was.
    void onLauncherEnded(WineLauncher* launcher, const ProgramRef& ref, const QString& errorText);
    void onProgramExited(const QString& uuid);
    void onProgramDeleted(const QString& bottle, const QString& uuid);
    void onBottleDeleted(const QString& bottle);
    void onLaunchResult(const QString& uuid, bool succeeded);
    bool isCurrent(const ProgramRef& ref, const WineLauncher* launcher) const;
    void endTiming(const ProgramRef& ref, bool report);
    void forget(const ProgramRef& ref);
    void checkEnd(const ProgramRef& ref);

    QHash<ProgramRef, Launch> m_launches;
    QHash<QString, QString> m_timedBottles;  ///< by the id of a program whose first window is waited for
};
