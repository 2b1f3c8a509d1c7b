#pragma once

#include <QHash>
#include <QMap>
#include <QPointer>
#include <QTranslator>
#include <optional>

#include "core/LeaveRule.h"
#include "core/Refusals.h"
#include "fenk/window/Application.h"

struct BottleEnvScript;
class AppLocalView;
class CommandLineHandler;
class ExeFileRunner;
class Mainwindow;
class QTimer;
namespace Fenk {
class Dialog;
}
class WindowMonitor;

/// The process: owns the main window, the running launches (at most one a bottle, by bottle name) and the
/// decision when the process may leave (LeaveRule). The only place that quits when nothing is left to wait
/// for. A process that has no window and only waits for pending work is leaving: it quits when that is done
/// or has taken two minutes, unless a window is shown or a start comes before. Everything runs on the main
/// thread, except checkBackendVersion.
class CellarixApplication : public Fenk::Application {
    Q_OBJECT
public:
    CellarixApplication(int& argc, char** argv);
    ~CellarixApplication() override;

    /// An empty list means the process's own arguments. 0 means that the event loop shall run.
    int handleCommandLine(const QStringList& args);
    /// For a start that takes its time and asks nothing: others need not wait for its end.
    void admitOtherStarts();

    void showMainWindow();
    /// For callers from outside, who have to wait while a start still asks something.
    void requestMainWindow();
    /// Starts a file, or with `debug` opens it in the configuration window. A file that is running already
    /// only shows a dialog.
    void openExe(const QString& path, bool debug);
    Refusals& refusals() { return m_refusals; }
    /// Starts a stored program; 0 when it is under way or runs already.
    int openProgram(const QString& bottleName, const QString& programUuid);
    /// Offers to install the components; without any the program is started and watched.
    int repairProgram(const QString& bottleName, const QString& programUuid, const QStringList& components);
    void addExeRunner(ExeFileRunner* runner);
    bool isProgramRunning(const QString& bottleName) const { return m_runners.contains(bottleName); }

    bool canQuit() const;
    bool hasVisibleWindow() const;
    /// True when the start left something to wait for: a window, a launch, another start, pending work, a
    /// script that sets up the environment, or service mode.
    bool isNeeded() const;
    /// All that the process has done so far is to show why it does not open something.
    bool hasOnlyRefused() const;
    /// Whether the process was started for an update of the environment.
    bool isUpdate() const;
    /// Ends the process when the script has ended, unless there is something else to wait for.
    void leaveAfter(const BottleEnvScript& script);

    bool checkServiceAgreement();
    void checkBackendVersion();

public Q_SLOTS:
    void handleQuitAction() override;

private:
    void loadTranslators(const QString& lang);
    void openChosenFile(const QString& path);
    void handleWaitingStarts();
    void handleNewInstance(qint64 pid, const QStringList& arguments);
    LeaveRule::Facts leaveFacts() const;
    void leaveIfPossible(LeaveRule::Ended what);
    void beginLeaving(LeaveRule::Ended what);
    void endLeaving();
    void onWorkEnded();
    void onLeavingLimit();
    void onLastWindowClosed();
    void onRunnerFinished();
    AppLocalView* localView() const;
    void onProgramDeleted(const QString& bottle, const QString& uuid);
    void onProgramAdded(const QString& bottle, const QString& uuid, const QString& object);
    void onProgramUpdated(const QString& bottle, const QString& uuid, const QString& object);
    void onBottleDeleted(const QString& bottle);
    void showAlreadyRunning(const QString& displayName);

    QPointer<Mainwindow> m_mainWindow;
    QMap<QString, ExeFileRunner*> m_runners;
    QTranslator* m_translator;
    WindowMonitor* m_windowMonitor;
    CommandLineHandler* m_commandLineHandler = nullptr;
    Refusals m_refusals;
    bool m_hasLaunched = false;
    QHash<QString, QPointer<Fenk::Dialog>> m_runningDialogs;  ///< by the program's name
    int m_startsHandled = 0;                                  ///< one inside the event loop of another
    bool m_othersHaveToWait = false;                          ///< a start may ask something
    QList<QStringList> m_waitingStarts;                       ///< came meanwhile
    std::optional<LeaveRule::Ended>
        m_leaving;  ///< why the process leaves as soon as the pending work is done
    QTimer* m_leavingLimit;
};
