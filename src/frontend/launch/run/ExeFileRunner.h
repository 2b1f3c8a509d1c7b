#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QPointer>
#include <functional>
#include <optional>

#include "launch/run/LaunchRecorder.h"
#include "launch/run/LaunchedProgram.h"

class ConfigWindowSession;
class ExeFileExecutor;
class LaunchView;
class RepairAssistant;
class WineExeLaunchBanner;

/// One visible launch: owns the executor, the banner and the log of the launch, and decides what a result
/// means for the library and for the bottle. Created by the application, which keeps it under id() until
/// emit_finished; the runner deletes itself after that signal. GUI thread.
///
/// The banner is shown while the program has no window of its own. After a failure it stays until the user
/// repairs, opens the configuration or closes it.
class ExeFileRunner : public QObject {
    Q_OBJECT
public:
    ExeFileRunner(const QString& exePath, QObject* parent);
    ExeFileRunner(const QString& bottle, const QString& programUuid, QObject* parent);
    ~ExeFileRunner() override;

    /// Launches the file. 0 when the launch is under way, -1 for a bad file or when `isFree` says that the
    /// chosen bottle is in use.
    int run(const std::function<bool(const QString& bottle)>& isFree = {});
    /// Opens the file in the configuration window instead. Results as for run(), and -1 without such a
    /// window. Runs an event loop while the bottle is made.
    int runInBottlesConfigWindow();
    /// Launches the stored program. 0 when the launch is under way; -1 for an unknown bottle or program,
    /// after emit_finished.
    int runProgram();
    /// Offers to install the components and then to launch the program: nothing happens until the user asks.
    /// Results as for runProgram().
    int fixup(const QString& bottle, const QString& uuid, const QStringList& components);
    /// Ends the launch; every call but the first is ignored. `cleanUp` removes the traces of an installer
    /// that has installed nothing; see LaunchCleanUp.
    void finish(bool cleanUp);

    QString id() const { return m_program.file.bottle; }
    QString displayName() const { return m_program.file.name; }

Q_SIGNALS:
    void emit_finished();

private Q_SLOTS:
    void slotsDebugButtonClicked();
    void handleExecutorFailed(bool canFix, bool isReportSussessed);
    void handleExecutorSuccess();
    void handleWindowPopup();
    void showLogsDialog();

private:
    enum class Mode { StoredProgram, File, FileInConfigWindow, Fixup };

    int init(const QString& path);
    bool prepareStored(Mode mode);
    std::optional<QJsonObject> readEntry();
    void createStored(const QJsonObject& record);
    void connectRun();
    void stop();
    void cancel();
    void askFeedback();
    bool isBottleOurs() const;
    std::function<void()> fileRecord() const;
    bool isInstaller() const;

    LaunchedProgram m_program;
    LaunchView* m_view;
    WineExeLaunchBanner* m_banner;  ///< of m_view
    RepairAssistant* m_assistant;
    LaunchRecorder m_recorder;
    ExeFileExecutor* m_executor = nullptr;
    QPointer<ConfigWindowSession> m_configWindow;
    QDateTime m_startTime;
    Mode m_mode = Mode::File;
    bool m_finishedOnce = false;
};
