#include "ServiceFixture.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

const char Service[] = "com.lumora.LumoraWineLauncher";
constexpr int CallTimeoutMs = 120000;
constexpr int StartTimeoutMs = 20000;

QDBusMessage callOf(const QString& object, const QString& method, const QVariantList& arguments) {
    const QString path = object.isEmpty() ? QString() : '/' + object;
    QDBusMessage message =
        QDBusMessage::createMethodCall(Service, "/com/lumora/Manager" + path,
                                       "com.lumora.Manager" + QString(path).replace('/', '.'), method);
    message.setArguments(arguments);
    return message;
}

}  // namespace

ServiceFixture::ServiceFixture()
    : m_connection(QDBusConnection::connectToBus(m_bus.address(), "bottleservice-test")) {
    for (const char* interface :
         {"com.lumora.Manager.Bottles", "com.lumora.Manager.Components", "com.lumora.Manager.Templates",
          "com.lumora.Manager.InstallerManager", "com.lumora.Manager.OfflineDependency"})
        m_connection.connect(Service, {}, interface, {}, this, SLOT(onSignal(QDBusMessage)));
}

ServiceFixture::~ServiceFixture() {
    m_service.terminate();
    m_service.waitForFinished(StartTimeoutMs);
    if (QTest::currentTestFailed())
        qDebug().noquote() << log();
    QDBusConnection::disconnectFromBus("bottleservice-test");
}

QProcessEnvironment ServiceFixture::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"WINEPREFIX", "WINEDEBUG", "LANG", "LC_CTYPE", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(name);
    // A bus may start the service without any locale; names in Chinese must work all the same.
    environment.insert("LC_ALL", "C");
    environment.insert("CELLARIX_PREPARE_SECONDS", "-1");  // most tests have no use for a template
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value());
    return environment;
}

bool ServiceFixture::start(const QStringList& arguments) {
    m_service.setProcessEnvironment(environment());
    m_service.setProcessChannelMode(QProcess::MergedChannels);
    m_service.start(SERVICE_EXECUTABLE, arguments);
    TestSupport::waitUntil([this] { return isOnBus() || m_service.state() == QProcess::NotRunning; },
                           StartTimeoutMs);
    return isOnBus();
}

void ServiceFixture::kill() {
    m_service.kill();
    m_service.waitForFinished();
}

bool ServiceFixture::isOnBus() const {
    return m_connection.interface()->isServiceRegistered(Service);
}

QDBusMessage ServiceFixture::call(const QString& method, const QVariantList& arguments,
                                  const QString& object) const {
    return m_connection.call(callOf(object, method, arguments), QDBus::Block, CallTimeoutMs);
}

QDBusPendingCall ServiceFixture::callLater(const QString& method, const QVariantList& arguments,
                                           const QString& object) const {
    return m_connection.asyncCall(callOf(object, method, arguments), CallTimeoutMs);
}

QString ServiceFixture::text(const QString& method, const QVariantList& arguments) const {
    return call(method, arguments).arguments().value(0).toString();
}

QJsonDocument ServiceFixture::json(const QString& method, const QVariantList& arguments) const {
    return QJsonDocument::fromJson(text(method, arguments).toUtf8());
}

QString ServiceFixture::error(const QString& method, const QVariantList& arguments) const {
    return call(method, arguments).errorMessage();
}

QString ServiceFixture::errorName(const QString& method, const QVariantList& arguments) const {
    return call(method, arguments).errorName().remove("com.lumora.Error.");
}

ServiceFixture::Interface ServiceFixture::parse(const QString& xml, const QString& interface) {
    Interface result;
    QXmlStreamReader reader(xml);
    QString current, member, in;
    int undocumented = 0;  // arguments and the member itself, less what is told of them
    while (!reader.atEnd()) {
        reader.readNext();
        const auto element = reader.name();
        const auto attribute = [&reader](const char* key) {
            return reader.attributes().value(QLatin1String(key)).toString();
        };
        if (reader.isStartElement() && element == "interface")
            current = attribute("name");
        if (current != interface)
            continue;
        const bool isMember = element == "method" || element == "signal";
        if (reader.isStartElement() && isMember) {
            in.clear();
            member = attribute("name");
            undocumented = 1;
        } else if (reader.isStartElement() && element == "arg") {
            in += attribute("direction") == "out" ? QString() : attribute("type");
            ++undocumented;
        } else if (reader.isStartElement() && element == "annotation") {
            --undocumented;
        } else if (reader.isEndElement() && isMember) {
            if (undocumented)
                result.undocumented += member;
            if (element == "method")
                result.methods += member + ':' + in;
        }
    }
    return result;
}

ServiceFixture::Interface ServiceFixture::introspect(const QString& interface) const {
    QDBusMessage message =
        QDBusMessage::createMethodCall(Service, '/' + QString(interface).replace('.', '/'),
                                       "org.freedesktop.DBus.Introspectable", "Introspect");
    return parse(m_connection.call(message).arguments().value(0).toString(), interface);
}

void ServiceFixture::startProgram(TestSupport::ChildProcess* process, const QString& bottle,
                                  const QString& windowsPath) const {
    const QString wine = m_home.path() + "/wine64";
    QFile::copy("/bin/sleep", wine);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("WINEPREFIX", bottlePath(bottle));
    process->setProcessEnvironment(environment);
    process->start("bash", {"-c", "exec -a \"$0\" \"$1\" 60", windowsPath, wine});
}

QString ServiceFixture::write(const QString& name, const QByteArray& content, bool isProgram) const {
    const QString path = m_home.write(".local/share/lumora-wine-bottles/" + name, content);
    if (isProgram)
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
    return path;
}

QStringList ServiceFixture::unfinished(const QString& directory) const {
    return QDir(dataDir() + '/' + directory)
        .entryList({".*"}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
}

void ServiceFixture::onSignal(const QDBusMessage& message) {
    QStringList arguments;
    for (const QVariant& argument : message.arguments())
        arguments += argument.toString();
    const QString interface = message.interface().section('.', -1);
    QStringList& log = interface == "Templates"          ? templateLog
                       : interface == "InstallerManager" ? setupLog
                                                         : signalLog;
    log += message.member() + '(' + arguments.join(", ") + ')';
}
