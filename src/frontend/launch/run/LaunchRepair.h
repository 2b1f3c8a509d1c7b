#pragma once

#include <QObject>
#include <QStringList>
#include <QVector>

#include "launch/MsgType.h"
#include "launch/repair/RepairAction.h"
#include "launch/repair/RunnerChoice.h"

class DependencyInstallQueue;
class LaunchBottle;
class RepairStep;

/// How a repair has ended.
enum class RepairEnd {
    Repaired,     ///< the program is to be started again
    NothingLeft,  ///< nothing could be repaired, and nothing else is known to try
    OnStaging,    ///< the last resort is in use already
    Failed,       ///< may be asked for again
    Declined,     ///< the user keeps the bottle's programs running; may be asked for again
};

/// The repairs of one launch: installs components and fonts, switches the bottle's runner, renews the bottle,
/// and remembers what was tried, which is not tried again. Owned by an ExeFileExecutor; GUI thread.
///
/// start() ends once, in ended(), unless cancel() comes first. Where the service refuses because programs run
/// in the bottle, the repair waits between programsRunning and answerProgramsRunning(). A service that goes
/// away counts as the failure of what it was asked for.
class LaunchRepair : public QObject {
    Q_OBJECT
public:
    /// In this launch.
    struct Tried {
        QStringList components;
        QStringList fonts;
        QStringList failedComponents;  ///< those of the components that could not be installed
        QVector<RepairAction> actions;

        bool any() const { return !components.isEmpty() || !fonts.isEmpty() || !actions.isEmpty(); }
    };

    /// The bottle must outlive this object. It is marked as changed by what a repair has changed in its
    /// record.
    LaunchRepair(LaunchBottle* bottle, QObject* parent);

    /// What the next start() installs.
    void setMissing(const QStringList& components, const QStringList& fonts);
    /// Of the failed components, what the next start() tries once more.
    void setRetried(const QStringList& components);
    /// From now on a repair needs no consent of the user.
    void allowUnasked() { m_mayRunUnasked = true; }
    /// Asks the service for the runners of 32-bit programs, without waiting.
    void lookUpRunners();

    /// Installs what is missing, or else carries out the action, or else switches to the staging runner.
    void start(RepairAction action);
    /// Ends the running programs and goes on, or ends with RepairEnd::Declined.
    void answerProgramsRunning(bool close);
    /// Ends without ended(), for good. Returns at once; the service rolls back what it has begun.
    void cancel();

    void onComponentsDone();
    void onRunnerSwitchDone(const QString& bottle, const QString& kind, const QString& name,
                            const QString& result);

    const QStringList& components() const { return m_components; }
    const QStringList& fonts() const { return m_fonts; }
    QStringList untriedComponents() const;
    const Tried& tried() const { return m_tried; }
    bool mayRunUnasked() const { return m_mayRunUnasked; }
    QString runnerFor32Bit() const { return m_runnersFor32Bit.forRepair(); }
    static bool isStagingKnown();

Q_SIGNALS:
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    void emitStep(const QString& text, MsgType recordType = MsgLine);
    void begun();
    /// These run in the bottle, and the repair waits for answerProgramsRunning().
    void programsRunning(const QStringList& names);
    /// The repair goes on without the component. The reason is for the user and may be empty.
    void componentFailed(const QString& component, const QString& reason);
    /// errorText is for the user; empty except after RepairEnd::Failed.
    void ended(RepairEnd result, const QString& errorText);

private:
    enum class Work { None, Components, Fonts, RunnerCheck, RunnerSwitch, Step };

    void installMissing();
    void endInstallation();
    void startStep(RepairAction action);
    void checkRunner();
    void switchRunner();
    void requestRunner();
    void onStepDone(RepairAction action, const QString& error);
    void onServiceLost();
    void askForPrograms(const QStringList& names);
    void resume();
    void giveUp();
    void end(RepairEnd result, const QString& errorText = {});

    LaunchBottle* m_bottle;
    QStringList m_components;
    QStringList m_fonts;
    Tried m_tried;
    bool m_mayRunUnasked = false;
    RunnerChoice m_runnersFor32Bit;
    DependencyInstallQueue* m_queue;
    RepairStep* m_step = nullptr;  ///< of Work::Step
    Work m_work = Work::None;      ///< under way, or waiting for the user's answer
    bool m_isAsking = false;       ///< the service has refused the work, and the user is asked
};
