#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QMap>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>

/// The built service on a bus of its own, with a home of its own. Records the service's signals. The
/// service's log is shown when a test program fails.
class ServiceFixture : public QObject {
    Q_OBJECT

public:
    ServiceFixture();
    ~ServiceFixture() override;

    /// False when the service does not come up.
    bool start(const QStringList& arguments = {});
    void startSecond(QProcess& process) const;

    /// SIGKILL, and wait for the end.
    void kill();
    QProcess& process() { return m_service; }
    void stopBus();

    QDBusMessage call(const QString& method, const QVariantList& arguments = {}) const;
    QDBusPendingCall callLater(const QString& method, const QVariantList& arguments = {}) const;
    QDBusMessage callComponents(const QString& method, const QVariantList& arguments = {}) const;
    QDBusMessage callManager(const QString& method) const;
    QString introspect(const QString& path) const;
    bool isOnBus() const;
    QByteArray log() const;

    QString home() const { return m_home.path(); }
    QString dataDir() const { return m_home.path() + "/data/lumora-wine-bottles"; }
    QString bottlePath(const QString& name) const { return dataDir() + "/bottles/" + name; }
    QProcessEnvironment environment() const;

    /// "name(argument, ...)" in the order of arrival.
    QStringList signalLog;

    /// Variables of the service's environment besides its own, for the next start.
    QMap<QString, QString> variables;

private Q_SLOTS:
    void onSignal(const QDBusMessage& message);

private:
    QTemporaryDir m_home;
    QProcess m_bus;
    QString m_address;
    QProcess m_service;
    QDBusConnection m_connection;
};
