#pragma once

#include <QDateTime>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>

#include "store/install/SetupProgress.h"

class ConfigWindowSession;
class ExeFileExecutor;
class LaunchView;
class RepairAssistant;
class YamlProgramInstallerBanner;

/// Installs one application: lets the background service make its bottle as the manifest says, then runs the
/// user's set-up program in it, and leaves the bottle as SetupCleanUp says. Ends once, by its own deletion; a
/// failure stays on the screen until the user closes it. Owned by its session; GUI thread.
class YamlProgramInstaller : public QObject {
    Q_OBJECT
public:
    YamlProgramInstaller(const QString& bottleId, const QString& yamlBase64, const QString& setupFile,
                         QObject* parent = nullptr);
    /// A set-up of the bottle that goes on is cancelled. The Windows program goes on.
    ~YamlProgramInstaller() override;

    void setDisplayName(const QString& name) { m_displayName = name; }
    void setIcon(const QIcon& icon);
    void start();

public Q_SLOTS:
    /// The user has confirmed it.
    void cancel();
    /// Every call but the first is ignored.
    void close();

protected:
    /// Writes what has happened to the event log, in the background.
    virtual void reportInstallEvent();

private:
    void connectBanner();
    void connectService();
    bool isSettingUp(const QString& bottle) const;
    void onTitle(const QString& title);
    void onDescription(const QString& text, int level);
    void onStep(int step, int steps);
    void onSetupDone();
    void connectRun();
    void onRunFailed(bool canFix, bool isSuccessed);
    void onDebug();
    void cancelSetup();
    void fail(const QString& errorText);
    void stopProgress();
    void showTitle();

    QIcon m_icon;
    QString m_displayName;
    QString m_bottleId;
    QString m_yamlBase64;
    QString m_setupFile;
    QString m_stepTitle;
    bool m_isRequested = false;  ///< the service was asked
    bool m_hasFailed = false;    ///< before the set-up program ran
    bool m_setupDone = false;    ///< the bottle is ready and the set-up program runs
    bool m_succeeded = false;
    bool m_canceled = false;
    bool m_closing = false;
    SetupProgress m_progress;
    QTimer m_tick;
    QVariantAnimation m_animation;
    QDateTime m_startTime;
    YamlProgramInstallerBanner* m_banner;  ///< of m_view
    LaunchView* m_view;
    RepairAssistant* m_assistant;
    ExeFileExecutor* m_executor = nullptr;
    QPointer<ConfigWindowSession> m_configWindow;
};
