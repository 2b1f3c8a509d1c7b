#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QXmlStreamReader>
#include <QtTest>
#include <csignal>

#include "support/PrivateBus.h"
#include "support/StoreFiles.h"
#include "support/TestHome.h"

namespace {

const char Name[] = "com.lumora.Cellarix.Store";
const char Path[] = "/com/lumora/Cellarix/Store";

/// The method names and signatures that an introspection text has for the store's interface.
QStringList methodsOf(const QByteArray& xml) {
    QStringList methods;
    QXmlStreamReader reader(xml);
    bool isInside = false;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("interface"))
            isInside = reader.attributes().value("name") == QLatin1String(Name);
        else if (isInside && reader.isStartElement() && reader.name() == QLatin1String("method"))
            methods += reader.attributes().value("name").toString();
        else if (isInside && reader.isStartElement() && reader.name() == QLatin1String("arg"))
            methods += reader.attributes().value("direction").toString() + ' ' +
                       reader.attributes().value("type").toString();
    }
    return methods;
}

QByteArray get(const QString& address, const QByteArray& path) {
    QTcpSocket socket;
    socket.connectToHost(QUrl(address).host(), quint16(QUrl(address).port()));
    if (!socket.waitForConnected())
        return "no connection";
    socket.write("GET " + path + " HTTP/1.1\r\nHost: evil.example\r\nConnection: close\r\n\r\n");
    QByteArray answer;
    while (socket.waitForReadyRead())
        answer += socket.readAll();
    return answer;
}

}  // namespace

/// The store of a session, started by the bus as it is when installed.
class StoreSessionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_store.add("notes", {7, "Notes", "记事本"}); }

    void cleanup() {
        if (m_bus) {
            const QDBusReply<uint> process = connection().interface()->servicePid(Name);
            if (process.isValid())
                ::kill(pid_t(process.value()), SIGTERM);
            QTRY_VERIFY(!isRunning());
        }
        QDBusConnection::disconnectFromBus("store-test");
        m_bus.reset();
    }

    void busStartsTheInstalledCommand() {
        const QString text = QString::fromUtf8(TestSupport::readFile(SERVICE_FILE));
        QVERIFY(text.contains(QString("Name=%1\n").arg(Name)));
        QVERIFY(text.contains(QRegularExpression("\nExec=/\\S*/bin/cellarix-store-server --session\n")));
    }

    void wireIsAsDescribed() {
        start("300");
        QDBusInterface introspection(Name, Path, "org.freedesktop.DBus.Introspectable", connection());
        const QDBusReply<QString> live = introspection.call("Introspect");
        const QStringList described = methodsOf(TestSupport::readFile(WIRE_FILE));
        QCOMPARE(described, QStringList({"address", "out s"}));
        QCOMPARE(methodsOf(live.value().toUtf8()), described);
    }

    void servesAtItsAddress() {
        start("300");
        const QString address = askAddress();
        QVERIFY2(address.startsWith("http://127.0.0.1:"), qPrintable(address));
        const QByteArray answer = get(address, "/vesk/client/apps");
        QVERIFY2(answer.contains("\"appName\":\"Notes\""), answer.constData());
        // Icons come from here, whatever the request claims.
        QVERIFY2(answer.contains("\"iconSaveKey\":\"" + address.toUtf8() + "/icons/notes-"),
                 answer.constData());
    }

    void addressStaysTheSameUnlessTaken() {
        start("300");
        const QString first = askAddress();
        cleanup();
        start("300");
        QCOMPARE(askAddress(), first);
        cleanup();
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost, quint16(QUrl(first).port())));
        start("300");
        const QString second = askAddress();
        QVERIFY(second != first);
        QVERIFY(get(second, "/vesk/client/categories").contains("Office"));
    }

    void tellsWhyItCannotServeAndTriesAgain() {
        m_store.write("categories.yml", "- {id: 0}\n");
        start("300");
        QDBusInterface store(Name, Path, Name, connection());
        const QDBusReply<QString> refusal = store.call("address");
        QCOMPARE(refusal.error().name(), QString("com.lumora.Error.Failed"));
        QVERIFY(refusal.error().message().contains(m_store.path()));
        m_store.write("categories.yml", "- {id: 1, names: {en: Office}}\n");
        QVERIFY(get(askAddress(), "/vesk/client/categories").contains("Office"));
    }

    void endsWhenIdleAndIsStartedAgain() {
        start("1");
        const QString address = askAddress();
        const pid_t process = pid_t(connection().interface()->servicePid(Name).value());
        QTRY_VERIFY(!isRunning());
        // The next one has the same port, once the first is gone.
        QCOMPARE(askAddress(), address);
        QTRY_VERIFY(::kill(process, 0) != 0);
        QVERIFY(get(address, "/vesk/client/categories").contains("Office"));
    }

private:
    void start(const QString& idleSeconds) {
        static const QRegularExpression command("Exec=\\S+");
        QString text = QString::fromUtf8(TestSupport::readFile(SERVICE_FILE)).trimmed();
        text.replace(command, QString("Exec=%1").arg(STORE_SERVER));
        text += QString(" --data %1 --idle-seconds %2\n").arg(m_store.path(), idleSeconds);
        m_store.write("services/store.service", text.toUtf8());
        m_bus = std::make_unique<TestSupport::PrivateBus>(m_store.path("services"));
        QDBusConnection::connectToBus(m_bus->address(), "store-test");
    }
    static QDBusConnection connection() { return QDBusConnection("store-test"); }
    static bool isRunning() { return connection().interface()->isServiceRegistered(Name); }
    static QString askAddress() {
        QDBusInterface store(Name, Path, Name, connection());
        const QDBusReply<QString> reply = store.call("address");
        return reply.isValid() ? reply.value() : reply.error().message();
    }

    TestSupport::StoreFiles m_store;
    std::unique_ptr<TestSupport::PrivateBus> m_bus;
};

QTEST_GUILESS_MAIN(StoreSessionTest)
#include "StoreSessionTest.moc"
