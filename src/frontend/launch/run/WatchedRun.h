#pragma once

#include <QMap>
#include <QObject>
#include <QProcess>
#include <QTimer>

#include "launch/MsgType.h"
#include "launch/script/LauncherExit.h"

class LaunchBottle;
class LaunchedFile;
class QJsonObject;
class WineExeProcessMonitor;
class WineLauncher;

/// What is known of one start of a program when it has ended.
struct RunEnd {
    int exitCode = 0;                 ///< the program's, or LauncherExit::NotStarted
    bool isExitCodeKnown = false;     ///< the launch script has ended with the program's exit code
    bool isEndedFromOutside = false;  ///< by a signal, or by the user in another window
    bool isSilent = false;            ///< Wine seems to hang
    bool windowSeen = false;
    bool crashed = false;
    int seconds = 0;
    QString startError;  ///< why the start could not succeed, for the user; empty where that is unknown
    LauncherExit::Report script;  ///< what the launch script has told
    QString logPath;

    /// Somebody has ended the program before it had a window, which is no failure.
    bool isStopped() const { return isEndedFromOutside && !windowSeen; }
};

/// One start of a program: runs the launch script, watches the program from inside the bottle, and finds out
/// when it has ended. Owned by an ExeFileExecutor, which makes one for each start; GUI thread.
///
/// start() ends once, in ended(), unless abandon() comes first. A program that starts another and exits goes
/// on as that. A set-up lasts as long as anything of it runs, with or without a window. A Wine that hangs, so
/// that nothing is heard of the bottle for 75 s, counts as the program's end. The monitor may give up before
/// a slow machine shows a process; it is then started again, at most six times.
class WatchedRun : public QObject {
    Q_OBJECT
public:
    struct Program {
        LaunchedFile* file;
        QString uuid;  ///< of a stored program; empty for the file
        QString name;  ///< for the user
    };

    /// File and bottle must outlive this object. A known start error explains the end, which comes soon.
    WatchedRun(const Program& program, LaunchBottle* bottle, const QString& startError, QObject* parent);
    /// Ends the launch script and the monitor; the Windows program goes on.
    ~WatchedRun() override;

    /// Does not wait for the bottle's record: the script starts when it is known.
    void start();
    /// The end, told from outside the run. Only logged when the run has ended already.
    void finish(int exitCode);
    /// Ends without ended(). Script and monitor go on until the destruction.
    void abandon();
    /// Ends the launch script, so that it starts nothing more. What it has started goes on.
    void closeLauncher();
    int seconds() const { return m_end.seconds; }

Q_SIGNALS:
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    void windowPopuped();
    /// A set-up goes on without a window; windowPopuped follows when it shows one again. May come repeatedly.
    void lingers();
    /// A set-up goes on in what it has started, and may have installed something already. Comes at most once.
    void mayHaveInstalled();
    void ended(const RunEnd& end);

private:
    enum class State { NotStarted, Starting, Running, HandedOver, Ended };

    bool isRunning() const { return m_state != State::NotStarted && m_state != State::Ended; }
    void connectParts();
    void launch(const QJsonObject& record);
    void launchInTerminal();
    void launchWatched();
    void tellInstalled();
    void onTick();
    void onAppStart();
    void onAppQuit();
    void onAppLingers();
    void onProcesses(const QMap<QString, QString>& processes);
    void onEndRequested(const QString& bottle, const QString& programId);
    void onLauncherFinished(int exitCode, QProcess::ExitStatus status);
    void onLauncherError(QProcess::ProcessError error);
    void onSilence();
    void restartMonitor();

    Program m_program;
    LaunchBottle* m_bottle;
    WineExeProcessMonitor* m_monitor;
    WineLauncher* m_launcher;
    State m_state = State::NotStarted;
    RunEnd m_end;
    QTimer m_secondTimer;
    QTimer m_silenceTimer;  ///< since anything was heard of the bottle
    bool m_hasProcesses = false;
    bool m_hasToldInstalled = false;
    int m_monitorRestarts = 0;
};
