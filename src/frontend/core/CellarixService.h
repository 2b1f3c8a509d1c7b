#pragma once

#include <QDBusAbstractAdaptor>
#include <QLoggingCategory>

class CellarixApplication;

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
    void showMainWindow();

private:
    CellarixApplication* m_application;
};
