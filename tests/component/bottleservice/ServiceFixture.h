#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include "support/PrivateBus.h"
#include "support/TestHome.h"

/// The built service on a bus of its own, with a home of its own. Records the service's signals. The
/// service's log is shown when a test program fails.
class ServiceFixture : public QObject {
    Q_OBJECT

public:
    ServiceFixture();
    ~ServiceFixture() override;

    /// False when the service does not come up.
    bool start(const QStringList& arguments = {});
    /// SIGKILL, and wait for the end.
    void kill();
    QProcess& process() { return m_service; }
    void stopBus() { m_bus.stop(); }
    bool isOnBus() const;

    QDBusMessage call(const QString& method, const QVariantList& arguments = {},
                      const QString& object = "Bottles") const;
    QDBusPendingCall callLater(const QString& method, const QVariantList& arguments,
                               const QString& object = "Bottles") const;
    QDBusMessage callManager(const QString& method) const { return call(method, {}, {}); }
    QString text(const QString& method, const QVariantList& arguments = {}) const;
    QJsonDocument json(const QString& method, const QVariantList& arguments = {}) const;
    /// The text of the error, and its name without "com.lumora.Error."; empty when all went well.
    QString error(const QString& method, const QVariantList& arguments = {}) const;
    QString errorName(const QString& method, const QVariantList& arguments = {}) const;

    /// What an interface says of itself: "name:types in" of its methods, and the names of members without
    /// documentation.
    struct Interface {
        QStringList methods, undocumented;
    };
    static Interface parse(const QString& xml, const QString& interface);
    Interface introspect(const QString& interface) const;

    QByteArray log() const { return TestSupport::readFile(dataDir() + "/service.log"); }
    const TestSupport::TestHome& home() const { return m_home; }
    QString dataDir() const { return m_home.data() + "/lumora-wine-bottles"; }
    QString bottlePath(const QString& name) const { return dataDir() + "/bottles/" + name; }
    /// Writes a file below the service's data.
    QString write(const QString& name, const QByteArray& content, bool isProgram = false) const;
    /// Something that is called as Wine's processes are, and runs in the bottle for a minute.
    void startProgram(TestSupport::ChildProcess* process, const QString& bottle,
                      const QString& windowsPath) const;
    /// What is half made or half deleted below a directory of the service's data.
    QStringList unfinished(const QString& directory) const;
    QProcessEnvironment environment() const;

    /// "name(argument, ...)" in the order of arrival.
    QStringList signalLog;
    /// The same of the templates' object, which tells of every first bottle.
    QStringList templateLog;
    /// And of the installer's.
    QStringList setupLog;
    /// Variables of the service's environment besides its own, for the next start.
    QMap<QString, QString> variables;

private Q_SLOTS:
    void onSignal(const QDBusMessage& message);

private:
    TestSupport::TestHome m_home;
    TestSupport::PrivateBus m_bus;
    TestSupport::ChildProcess m_service;
    QDBusConnection m_connection;
};
