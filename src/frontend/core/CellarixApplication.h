#pragma once

#include <QPointer>
#include <QTranslator>

#include "core/LeaveRule.h"
#include "core/Refusals.h"
#include "fenk/window/Application.h"

struct BottleEnvScript;
class AppLocalView;
class CommandLineHandler;
class ExeFileRunner;
class Mainwindow;
class ProcessEnd;
class RunningLaunches;
class WindowMonitor;

/// The process: owns the main window, the running launches and the decision when the process may leave
/// (ProcessEnd), and handles one start after the other. Created by main. Everything runs on the main thread,
/// except checkBackendVersion.
class CellarixApplication : public Fenk::Application {
    Q_OBJECT
public:
    CellarixApplication(int& argc, char** argv);
    ~CellarixApplication() override;

    /// Handles a start, or queues it while another one may ask the user something; the result is then 0. An
    /// empty list means the process's own arguments. 0 means that the event loop is to run.
    int handleCommandLine(const QStringList& args);
    /// For a start that takes its time and asks nothing: queued starts are handled before its end.
    void admitOtherStarts();

    void showMainWindow();
    /// The same for callers from outside: queued while a start may ask the user something.
    void requestMainWindow();
    /// These are as RunningLaunches has them.
    void openExe(const QString& path, bool debug);
    int openProgram(const QString& bottleName, const QString& programUuid);
    int repairProgram(const QString& bottleName, const QString& programUuid, const QStringList& components);
    /// Whether the user has chosen this batch file in a window, once. One that is given to the command line
    /// is a document.
    bool takeChosenBatchFile(const QString& path) { return m_chosenBatchFiles.removeOne(path); }
    void addExeRunner(ExeFileRunner* runner);
    bool isProgramRunning(const QString& bottleName) const;
    Refusals& refusals() { return m_refusals; }

    bool canQuit() const;
    /// Logs the window that it finds.
    bool hasVisibleWindow() const;
    /// True when the start left something to wait for: a window, a launch, another start, pending work, a
    /// script that sets up the environment, or service mode.
    bool isNeeded() const;
    /// Whether the process has done nothing but show why it does not open something.
    bool hasOnlyRefused() const;
    /// Whether the process was started for an update of the environment.
    bool isUpdate() const;
    /// Ends the process when the script has ended, unless there is something else to wait for.
    void leaveAfter(const BottleEnvScript& script);
    /// The same when an attempt to install an application has ended.
    void leaveAfterSetUp();

    bool checkServiceAgreement();
    void checkBackendVersion();

public Q_SLOTS:
    void handleQuitAction() override;

private:
    void loadTranslators(const QString& lang);
    void openChosenFile(const QString& path);
    void handleWaitingStart();
    void handleNewInstance(qint64 pid, const QStringList& arguments);
    LeaveRule::Facts leaveFacts() const;
    void onLastWindowClosed();
    AppLocalView* localView() const;
    void onProgramDeleted(const QString& bottle, const QString& uuid);
    void onProgramAdded(const QString& bottle, const QString& uuid, const QString& object);
    void onProgramUpdated(const QString& bottle, const QString& uuid, const QString& object);
    void onBottleDeleted(const QString& bottle);

    QPointer<Mainwindow> m_mainWindow;
    Refusals m_refusals;
    RunningLaunches* m_launches;
    QTranslator* m_translator;
    WindowMonitor* m_windowMonitor;
    ProcessEnd* m_end;
    CommandLineHandler* m_commandLineHandler = nullptr;
    int m_startsHandled = 0;             ///< more than one: in the event loop of another
    bool m_othersHaveToWait = false;     ///< a start may ask the user something
    QList<QStringList> m_waitingStarts;  ///< that have come meanwhile
    QStringList m_chosenBatchFiles;      ///< in a window, among these starts
};
