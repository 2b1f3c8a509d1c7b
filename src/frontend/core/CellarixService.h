#pragma once

#include <QDBusAbstractAdaptor>
#include <QLoggingCategory>
#include <QPointer>

class CellarixApplication;
class YamlProgramInstallerSession;

Q_DECLARE_LOGGING_CATEGORY(serviceLog)

/// The methods that other programs of the desktop can call, on the session bus as com.lumora.Cellarix.
/// Created by main on its stack. Without a bus, or when the name is taken, the process goes on and only logs
/// it.
class CellarixService : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.lumora.Cellarix")
    Q_PROPERTY(QString clientVersion READ clientVersion)
public:
    explicit CellarixService(CellarixApplication* application);
    ~CellarixService() override;

    QString clientVersion() const;

public Q_SLOTS:
    /// Installs an application of the store. Refused, with a notification, while another is being installed
    /// from here or a window is shown that such an installation would get in the way of.
    Q_NOREPLY void installProgram(const QString& appId, const QString& appInfoId);
    void showMainWindow();

private:
    bool isInstalling() const;
    bool isWindowBusy() const;
    void startSession(const QString& appId, const QString& appInfoId);
    void onSessionDone();
    void notifyBusy() const;

    QPointer<YamlProgramInstallerSession> m_installer;
    CellarixApplication* m_application;
};
