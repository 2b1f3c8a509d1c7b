#include "ServiceFixture.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDir>
#include <QtTest>

namespace {

const char Service[] = "com.lumora.LumoraWineLauncher";
const char ManagerPath[] = "/com/lumora/Manager";
const char BottlesPath[] = "/com/lumora/Manager/Bottles";
const char ComponentsInterface[] = "com.lumora.Manager.Components";
const char BottlesInterface[] = "com.lumora.Manager.Bottles";
constexpr int CallTimeoutMs = 120000;
constexpr int StartTimeoutMs = 20000;

}  // namespace

ServiceFixture::ServiceFixture() : m_connection(QString()) {
    m_bus.setProcessChannelMode(QProcess::SeparateChannels);
    m_bus.start("dbus-daemon", {"--session", "--print-address", "--nofork", "--nopidfile"});
    while (m_address.isEmpty() && m_bus.waitForReadyRead(StartTimeoutMs))
        m_address = QString::fromUtf8(m_bus.readLine()).trimmed();
    m_connection = QDBusConnection::connectToBus(m_address, "bottleservice-test");
    for (const char* interface : {BottlesInterface, ComponentsInterface})
        m_connection.connect(Service, {}, interface, {}, this, SLOT(onSignal(QDBusMessage)));
}

ServiceFixture::~ServiceFixture() {
    if (m_service.state() != QProcess::NotRunning) {
        m_service.terminate();
        if (!m_service.waitForFinished(StartTimeoutMs))
            kill();
    }
    if (QTest::currentTestFailed())
        qDebug().noquote() << log();
    QDBusConnection::disconnectFromBus("bottleservice-test");
    stopBus();
}

QProcessEnvironment ServiceFixture::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"WINEPREFIX", "WINEDEBUG", "LANG", "LC_CTYPE", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(name);
    environment.insert("HOME", m_home.path());
    environment.insert("XDG_DATA_HOME", m_home.path() + "/data");
    environment.insert("XDG_CONFIG_HOME", m_home.path() + "/config");
    environment.insert("XDG_CACHE_HOME", m_home.path() + "/cache");
    environment.insert("DBUS_SESSION_BUS_ADDRESS", m_address);
    // A bus may start the service without any locale; names in Chinese must work all the same.
    environment.insert("LC_ALL", "C");
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value());
    return environment;
}

bool ServiceFixture::start(const QStringList& arguments) {
    m_service.setProcessEnvironment(environment());
    m_service.setProcessChannelMode(QProcess::MergedChannels);
    m_service.start(SERVICE_EXECUTABLE, arguments);
    return QTest::qWaitFor([this] { return isOnBus() || m_service.state() == QProcess::NotRunning; },
                           StartTimeoutMs) &&
           isOnBus();
}

void ServiceFixture::startSecond(QProcess& process) const {
    process.setProcessEnvironment(environment());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(SERVICE_EXECUTABLE, QStringList());
}

void ServiceFixture::kill() {
    m_service.kill();
    m_service.waitForFinished();
}

void ServiceFixture::stopBus() {
    m_bus.terminate();
    m_bus.waitForFinished();
}

bool ServiceFixture::isOnBus() const {
    return m_connection.interface()->isServiceRegistered(Service);
}

static QDBusMessage bottlesCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(Service, BottlesPath, BottlesInterface, method);
    message.setArguments(arguments);
    return message;
}

QByteArray ServiceFixture::log() const {
    QFile file(dataDir() + "/service.log");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QDBusMessage ServiceFixture::call(const QString& method, const QVariantList& arguments) const {
    return m_connection.call(bottlesCall(method, arguments), QDBus::Block, CallTimeoutMs);
}

QDBusMessage ServiceFixture::callComponents(const QString& method, const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(Service, "/com/lumora/Manager/Components",
                                                          ComponentsInterface, method);
    message.setArguments(arguments);
    return m_connection.call(message, QDBus::Block, CallTimeoutMs);
}

QDBusPendingCall ServiceFixture::callLater(const QString& method, const QVariantList& arguments) const {
    return m_connection.asyncCall(bottlesCall(method, arguments), CallTimeoutMs);
}

QDBusMessage ServiceFixture::callManager(const QString& method) const {
    return m_connection.call(
        QDBusMessage::createMethodCall(Service, ManagerPath, "com.lumora.Manager", method));
}

QString ServiceFixture::introspect(const QString& path) const {
    const QDBusMessage reply = m_connection.call(
        QDBusMessage::createMethodCall(Service, path, "org.freedesktop.DBus.Introspectable", "Introspect"));
    return reply.arguments().value(0).toString();
}

void ServiceFixture::onSignal(const QDBusMessage& message) {
    QStringList arguments;
    for (const QVariant& argument : message.arguments())
        arguments += argument.toString();
    signalLog += message.member() + '(' + arguments.join(", ") + ')';
}
