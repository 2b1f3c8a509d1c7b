#pragma once

#include <QObject>
#include <QStringList>

#include "launch/MsgType.h"
#include "launch/repair/Diagnosis.h"
#include "launch/run/LaunchVerdict.h"
#include "launch/run/LaunchedFile.h"

class BottlePreparation;
class LaunchAnalysis;
class LaunchBottle;
class LaunchRepair;
class LinkCollector;
class WatchedRun;
enum class RepairEnd;
struct RunEnd;

/// One launch without any window of its own: orders the preparation of the bottle, the watched run, the
/// analysis of its end and the repair, which leads to the next run. Reports in words and signals. Owned by an
/// ExeFileRunner; GUI thread.
///
/// Construction blocks until the file has been read (see LaunchedFile); the choice of the bottle goes on in
/// the background. Each start ends once: in runSuccessed, in runFailed, in stopped, or in a repair that needs
/// no consent and the next start. After runFailed with canWeFix the launch waits for applyFix. The one ending
/// without a signal is a file that can't be read, which is only logged. A service that goes away counts as
/// the failure of what it was asked for.
class ExeFileExecutor : public QObject {
    Q_OBJECT
public:
    /// An empty path is for programs that are stored in a bottle already.
    ExeFileExecutor(const QString& exePath, QObject* parent);
    /// The Windows program goes on: only killWineServer ends it.
    ~ExeFileExecutor() override;

    void start();
    /// Launches the file in a bottle that is ready.
    void startIn(const QString& bottle);
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
    /// The bottle and its record, for whoever needs it besides the launch. Has a name from the start on.
    LaunchBottle* bottle() const { return m_bottle; }
    /// Never waits: until iconReady the desktop's ordinary icon for programs stands in for the file's own.
    QIcon exeIcon() { return m_file->icon(); }
    QString displayName();
    /// This launch has asked the service to make the bottle, which may be under way.
    bool hasAskedForBottle() const;
    /// Waits for the inspection; false for a stored program.
    bool isInstaller() { return m_file->isInstaller(); }
    QJsonObject peInfo() { return m_file->peInfo(); }
    QJsonObject fileInfo() { return m_file->fileInfo(); }
    QString md5() { return m_file->md5(); }

    void setAppName(const QString& name) { m_appName = name; }
    /// 1 for a launch of a file, 0 for a stored program and a fixup.
    void setFirstRun(int firstRun) { m_firstRun = firstRun; }
    int seconds() const;
    /// The last start came up, whatever was wrong with the program later on.
    bool hasComeUp() const;
    /// Of the last start that has failed; valid from runFailed on.
    const Diagnosis& diagnosis() const { return m_diagnosis; }
    /// What applyFix() would install, and what repairs have been tried for.
    const QStringList& components() const;
    const QStringList& fonts() const;
    const QStringList& triedComponents() const;

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
    /// Idle: before the first start, and from a start's result or offer on.
    enum class State { Idle, Preparing, Running, Analysing, CollectingLinks, Repairing, Cancelled };

    void connectParts();
    void launch(const QString& startError = {});
    void dropLastRun();
    void dropAnalysis();
    void onRunEnded(const RunEnd& end);
    void onAnalysed(const LaunchVerdict& verdict);
    void onLinksCollected();
    void repair();
    void onRepairEnded(RepairEnd end, const QString& errorText);
    void fail(bool canWeFix, bool isSuccessed);

    LaunchedFile* m_file;
    LaunchBottle* m_bottle;
    BottlePreparation* m_preparation;
    LinkCollector* m_links;
    LaunchRepair* m_repair;
    WatchedRun* m_run = nullptr;           ///< of the last start
    LaunchAnalysis* m_analysis = nullptr;  ///< of the last start's end
    State m_state = State::Idle;
    QString m_programUuid;
    QString m_appName;
    int m_firstRun = 1;
    LaunchVerdict m_verdict;  ///< of the last start
    Diagnosis m_diagnosis;
};
