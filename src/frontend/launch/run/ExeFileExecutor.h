#pragma once

#include <QDateTime>
#include <QFutureWatcher>
#include <QIcon>
#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QTimer>

#include "launch/MsgType.h"
#include "launch/repair/Diagnosis.h"
#include "launch/repair/FailureFacts.h"
#include "launch/repair/RunnerChoice.h"
#include "launch/run/LaunchVerdict.h"
#include "launch/script/LauncherExit.h"

struct BusResult;
class DependencyInstallQueue;
class ExeFileChecker;
class ExeIconReader;
class RepairStep;
class WineExeProcessMonitor;
class WineLauncher;

/// One launch without any window of its own: inspects the file, picks or creates a bottle, sees to the
/// runner, starts the program, watches it, and when it has gone reads Wine's log and decides what that means.
/// Reports in words and signals. Owned by an ExeFileRunner.
///
/// Construction blocks until the file has been read (its key parts, at most 11 MiB, and its version block);
/// the choice of the bottle goes on in the background. Each start ends once: in runSuccessed, in runFailed,
/// in stopped, or in a repair of its own accord and the next start. After runFailed with canWeFix the launch
/// waits for applyFix. A Wine that hangs, so that nothing is heard of the bottle for 75 s, counts as the
/// program's end. A set-up lasts as long as anything of it runs, with or without a window: what unpacks it
/// goes before it has come. The one ending without a signal is a file that can't be read, which is only
/// logged. A service that goes away in the middle counts as the failure of what it was asked for.
class ExeFileExecutor : public QObject {
    Q_OBJECT
public:
    /// An empty path is for programs that are stored in a bottle already.
    ExeFileExecutor(const QString& exePath, QObject* parent);
    /// Lets the Windows program go on: that is ended by killWineServer, never by the loss of its watcher.
    ~ExeFileExecutor() override;

    void start();
    void launchProgram(const QString& bottle, const QString& programUuid);
    /// A repair that was asked for beforehand: applyFix installs the components and launches the program.
    void prepareFix(const QString& bottle, const QString& programUuid, const QStringList& components);
    /// Repairs what the last start has brought to light and launches again. Without effect while the program
    /// or a repair is running.
    void applyFix();
    /// The same for components that could not be installed before.
    void retryFix(const QStringList& components);
    /// The user's answer to programsRunning: ends them and goes on, or gives the repair up, which can be
    /// asked for again.
    void answerProgramsRunning(bool close);
    /// Ends the launch without a result, in whatever state it is: nothing is installed or launched any more,
    /// and the service rolls back the repair that it has begun. Returns at once. The Windows program goes on.
    void cancelRepair();

    /// Ends the launch script, so that it starts nothing more. What it has started goes on.
    void closeLauncher();

    /// Waits for the bottle choice if it is still under way.
    QString bottlesName();
    /// Never waits: the first call begins to look for the file's own icon, and until iconReady the desktop's
    /// ordinary one for programs stands in for it.
    QIcon exeIcon();
    QString displayName();
    /// This launch has asked the service to make the bottle, which may be under way.
    bool hasAskedForBottle() const { return m_isBottleNew; }
    bool isInstaller();  ///< waits for the inspection; false for a stored program
    QJsonObject peInfo();
    QJsonObject fileInfo();  ///< as exeFileInfo() tells it, without running the tools again
    QString md5();

    void setAppName(const QString& name) { m_appName = name; }
    /// 1 for a launch of a file, 0 for a stored program and a fixup.
    void setFirstRun(int firstRun) { m_firstRun = firstRun; }
    int seconds() const { return m_seconds; }
    /// The last start came up, whatever was amiss with the program later on.
    bool hasComeUp() const { return m_hasComeUp; }
    /// Of the last start that has failed; valid from runFailed on.
    const Diagnosis& diagnosis() const { return m_diagnosis; }
    /// What applyFix() would install, and what repairs have been tried for.
    const QStringList& components() const { return m_components; }
    const QStringList& fonts() const { return m_fonts; }
    const QStringList& triedComponents() const { return m_triedComponents; }

Q_SIGNALS:
    void emitStep(const QString& text, MsgType recordType = MsgLine);
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    /// The file's own icon, in all its sizes. Comes at most once, and only for a file that has one.
    void iconReady(const QIcon& icon);
    void windowPopuped();
    void Fixing();  ///< a repair has begun
    /// A set-up goes on without a window; windowPopuped follows when it shows one again. May come repeatedly.
    void lingers();
    void runSuccessed();
    void runFailed(bool canWeFix = false, bool isSuccessed = false);
    /// Somebody has ended the program before it had a window; this is the start's end, and no failure.
    void stopped();
    /// These run in the bottle, and the repair waits for answerProgramsRunning.
    void programsRunning(const QStringList& names);
    /// A repair goes on without the component. The reason is for the user and may be empty.
    void componentFailed(const QString& component, const QString& reason);

public Q_SLOTS:
    void onWineInstalled(int success, const QString& componentType, const QString& componentName,
                         const QString& errMsg);
    /// Sizes are bytes.
    void onWineDownload(const QString& componentType, const QString& componentName, uint received_size,
                        uint total_size, const QString& status);
    void onComponentsRepareDone();
    void onExeFinished(int exitCode);
    void onRunnerSwitchDone(const QString& bottle_name, const QString& component_type,
                            const QString& component_name, const QString& result);

private:
    /// What is to come from the service.
    enum class Awaited { Nothing, Runner, Bottle, Components, RunnerSwitch, Step };

    void connectParts();
    void inspect();
    void prepareBottle(const QString& runner);
    void installRunner();
    void createBottle();
    void requestBottle(int attempts);
    void onBottleCreated(const QJsonObject& result, int attempts);
    void launch();
    void launchInTerminal();
    void readLog(bool hasLog);
    void askForSize();
    LaunchFacts facts(int exitCode);
    void carryOut(const LaunchVerdict& verdict);
    void enterLinks();
    void collectLinks();
    void report(const LaunchVerdict& verdict);
    void diagnose(int exitCode, const LaunchFacts& found);
    void fail(bool canWeFix, bool isSuccessed);
    bool hasTriedRepair() const;
    static bool isStagingKnown();
    void lookForDamage(int exitCode);
    void decide(int exitCode);
    void addPossibleRepairs();
    void applyOtherRepair(RepairAction action);
    void onStepDone(const QString& error);
    void switchRunner();
    void requestRunner();
    void askForPrograms(const QStringList& names);
    void giveUp();
    void onServiceLost();
    void onTemplateProgress(const QString& runner, int percent);
    void onTick();
    void onAppStart();
    void onAppQuit();
    void onEndRequested(const QString& bottle, const QString& programId);
    void onSilence();
    void onProcesses(const QMap<QString, QString>& processes);
    void onAppLingers();
    void onLauncherFinished(int exitCode, QProcess::ExitStatus status);
    void onLauncherError(QProcess::ProcessError error);

    QString m_exePath;
    QString m_programUuid;
    QString m_bottlesName;
    QFutureWatcher<QString> m_watcher;  ///< on the choice of the bottle
    QString m_runner;
    QString m_appName;
    ExeFileChecker* m_checker = nullptr;
    ExeIconReader* m_iconReader = nullptr;
    QIcon m_icon;
    WineExeProcessMonitor* m_monitor;
    WineLauncher* m_launcher;
    bool m_installFailed = false;   ///< by the log of the last start
    LauncherExit::Report m_script;  ///< what the launch script has told when the start had ended
    QString m_startError;           ///< why the present start cannot come to anything, known before its end
    bool m_hasHandedOver = false;   ///< the first process has ended, and the monitor tells when the rest has
    int m_exitCode = 0;             ///< of the process that has handed over
    bool m_isExitKnown = false;     ///< the launch script has ended with the program's exit code
    bool m_isEndedFromOutside = false;  ///< the present start, by a signal or in another window
    bool m_areLinksEntered = false;     ///< in the present start, before its end
    bool m_isBottleNew = false;
    bool m_autoFix = false;
    QStringList m_components;  ///< that are to be tried
    QStringList m_fonts;
    DependencyInstallQueue* m_queue;
    bool m_finished = false;
    bool m_isCancelled = false;
    QStringList m_triedComponents;
    QStringList m_triedFonts;
    QStringList m_failedComponents;  ///< of the tried ones
    bool m_hasSwitchedRunner = false;
    int m_seconds = 0;
    QTimer* m_secondTimer;  ///< runs as long as a program does
    QJsonObject m_peInfo;
    bool m_peInfoRead = false;
    QString m_md5;
    int m_firstRun = 1;

    Awaited m_awaited = Awaited::Nothing;
    bool m_isAsking = false;  ///< the service has refused what is awaited, and the user is asked
    int m_starts = 0;
    bool m_hasBeenSeen = false;                        ///< a process of the present start, by the monitor
    int m_looks = 0;                                   ///< that the monitor has begun anew for it
    QDateTime m_since = QDateTime::currentDateTime();  ///< shortcuts made from then on are the program's
    LaunchVerdict m_verdict;                           ///< while links are collected
    RunnerChoice m_runnersFor32Bit;
    RepairStep* m_step = nullptr;  ///< the one under way
    QVector<RepairAction> m_triedRepairs;
    FailureFacts m_failure;  ///< of the last start
    Diagnosis m_diagnosis;
    bool m_hasComeUp = false;
    QTimer m_linksTimer;
    QTimer m_silenceTimer;  ///< since the monitor has last told anything
};
