#pragma once

#include <QDateTime>
#include <QFuture>
#include <QObject>
#include <functional>

#include "launch/LaunchWindows.h"
#include "launch/MsgType.h"

class ExeFileExecutor;
class LogsWidget;
class RepairAssistant;
class WineExeLaunchBanner;

/// One visible launch: owns the executor, the banner and the lines of the launch, decides what a result means
/// for the library, and writes the launch's record. Created by the application object, which keeps it under
/// id() until emit_finished; the runner deletes itself after that signal.
///
/// The banner is up while the program has no window of its own; a failed launch waits in it for the user, who
/// repairs, looks closer or closes it.
class ExeFileRunner : public QObject {
    Q_OBJECT
public:
    ExeFileRunner(const QString& exePath, QObject* parent);
    ExeFileRunner(const QString& bottle, const QString& programUuid, QObject* parent);
    ~ExeFileRunner() override;

    /// 0 when the launch is under way, -1 for a bad file, and when the bottle that has been chosen is not
    /// free.
    int run(const std::function<bool(const QString&)>& isFree = {});
    /// The same for a file that is to be looked at in the configuration window first. Runs an event loop
    /// while its bottle is made.
    int runInBottlesConfigWindow();
    /// 0 when the launch is under way. -1 for an unknown bottle or program; emit_finished has then been sent.
    int runProgram();
    /// Offers to install the components and to launch the program then: nothing happens until the user asks.
    /// Results as for runProgram().
    int fixup(const QString& bottle, const QString& uuid, const QStringList& components);
    /// Ends the launch. May be reached several times; only the first counts. `cleanUp` removes what an
    /// installer that has installed nothing left behind; see LaunchCleanUp.
    void finish(bool cleanUp);

    QString id() const { return m_bottlesName; }
    QString displayName() const { return m_appName; }

Q_SIGNALS:
    void emit_finished();

private Q_SLOTS:
    void slotsDebugButtonClicked();
    void handleExecutorFailed(bool canFix, bool isReportSussessed);
    void handleExecutorSuccess();
    void handleWindowPopup();
    void showLogsDialog();
    void askToClosePrograms(const QStringList& names);

private:
    enum Mode { StoredProgram = 0, File = 1, FileInConfigWindow = 2 };

    int init(const QString& path);
    int checkEntry() const;
    void raiseBanner();
    void showBanner();
    void fillFromFile();
    void fillFromRecord();
    void createStored();
    void connectRun();
    void onStep(const QString& text, MsgType type);
    void onMessage(const QString& text, MsgType type);
    void repair();
    void retryRepair();
    void handleExecutorStopped();
    void stop();
    void askFeedback();
    void createBottle();
    void collectLinks();
    void checkLinks(bool success);
    void addFile();
    QString addedUuid() const;
    void recordStart(bool good);
    void leaveBottle(bool cleanUp, const std::function<void()>& then);
    void writeRunRecord() const;
    std::function<void()> launchRecord() const;
    bool isPublic() const;
    bool isInstaller() const;

    ExeFileExecutor* m_executor = nullptr;
    WineExeLaunchBanner* m_banner;
    LogsWidget* m_logsWidget;
    RepairAssistant* m_assistant;
    QString m_appName;
    QDateTime m_startTime;
    int m_elapsedSeconds = 0;
    Mode m_mode = File;
    bool m_isFixup = false;
    bool m_linksCreated = false;
    QFuture<QString> m_added;  ///< the id of the entry that was made of the file, or nothing
    QString m_exePath;
    QString m_bottlesName;
    QString m_programUuid;
    int m_rating = 0;
    bool m_succeeded = false;
    bool m_repaired = false;
    bool m_canceled = false;
    bool m_isBottleNew = false;  ///< the configuration window's bottle was asked for and has no entry yet
    bool m_finishedOnce = false;
};
