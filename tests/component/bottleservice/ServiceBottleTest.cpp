#include <unistd.h>
#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <QtTest>
#include <csignal>

#include "ServiceFixture.h"
#include "bottleservice/wine/Processes.h"

namespace {

// Made of what a shell, a YAML file and a C locale would break on.
const QString Name = QString::fromUtf8("安装 \"a\" 'b' $(c); #d: .exe") + QString(32, 'f');

/// What the call answered: "ok" and "created".
QString outcome(const QDBusMessage& reply) {
    const auto result = QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8());
    return QString("%1 %2").arg(result["ok"].toBool()).arg(result["created"].toBool());
}

}  // namespace

/// One real bottle from its making to its end, and makings that are interrupted.
class ServiceBottleTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;

    bool runs(const QString& id) const {
        return !Processes().ofProgram(m_service->bottlePath(Name), id).empty();
    }
    bool isEmpty() const { return Processes().ofBottle(m_service->bottlePath(Name)).empty(); }

    void startProgram(QProcess& process, const QString& id, const QStringList& launcher = {"wine"}) {
        QProcessEnvironment environment = m_service->environment();
        environment.insert("LC_ALL", "C.UTF-8");
        environment.insert("WINEPREFIX", m_service->bottlePath(Name));
        environment.insert("_CXB_WINE_PROGRAM_UUID", id);
        process.setProcessEnvironment(environment);
        process.start(launcher[0], launcher.mid(1) + QStringList{"cmd.exe", "/c", "echo ready & set /p x="});
        QByteArray output;
        const auto isReady = [&] { return (output += process.readAllStandardOutput()).contains("ready"); };
        QTRY_VERIFY_WITH_TIMEOUT(isReady(), 30000);
    }

    /// Until Wine works on the template, which there must not be yet.
    QString waitForCreation() {
        const QString root = m_service->dataDir() + "/templates/";
        QString directory;
        const auto isAtWork = [&] {
            directory = m_service->unfinished("templates").value(0);
            return !directory.isEmpty() && !Processes().ofBottle(root + directory).empty();
        };
        [&] { QTRY_VERIFY_WITH_TIMEOUT(isAtWork(), 60000); }();
        return root + directory;
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        m_service = std::make_unique<ServiceFixture>();
        QVERIFY(m_service->start());
    }

    void createTwiceAtOnce() {
        QCOMPARE(outcome(m_service->call("createBottles", {Name, "no-such-runner"})), "0 0");
        QCOMPARE(m_service->unfinished("bottles"), QStringList());
        QDBusPendingCallWatcher first(m_service->callLater("createBottles", {Name, ""}));
        QDBusPendingCallWatcher second(m_service->callLater("createBottles", {Name, "lumora-wine10-stable"}));
        waitForCreation();
        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(m_service->text("list"), "[]");
        QCOMPARE(m_service->errorName("get", {Name}), "NoSuchBottle");
        QVERIFY(elapsed.elapsed() < 2000 && !first.isFinished());
        QTRY_VERIFY_WITH_TIMEOUT(first.isFinished() && second.isFinished(), 120000);
        QCOMPARE(outcome(first.reply()), "1 1");
        QCOMPARE(outcome(second.reply()), "1 0");
        QCOMPARE(m_service->unfinished("bottles"), QStringList());
    }

    void runCommand() {
        const QString mark = m_service->home().path() + "/touched";
        const QString command = "cmd.exe /c echo \"two words\" ; touch %1 $(touch %1)";
        QCOMPARE(m_service->error("run_command", {Name, command.arg(mark)}), QString());
        const QString log = m_service->bottlePath(Name) + "/logs/command-cmd.exe.txt";
        QTRY_VERIFY_WITH_TIMEOUT(TestSupport::readFile(log).contains("two words"), 30000);
        QVERIFY(!QFileInfo::exists(mark));
    }

    void killProgramSparesTheOthers() {
        QCOMPARE(m_service->error("killWineServer", {Name}), QString());
        QVERIFY(isEmpty());
        // The first one also starts the wineserver and the bottle's own services, which then carry its id.
        QProcess first, second;
        startProgram(first, "first");
        startProgram(second, "second");
        QCOMPARE(m_service->error("killProgram", {Name, "first"}), QString());
        QVERIFY(!runs("first"));
        QTRY_COMPARE(first.state(), QProcess::NotRunning);
        QVERIFY(second.state() == QProcess::Running && runs("second"));
        QCOMPARE(m_service->error("killWineServer", {Name}), QString());
        QTRY_COMPARE(second.state(), QProcess::NotRunning);
        QVERIFY(isEmpty());
    }

    void endIsTold() {
        const QStringList launcher{LAUNCHER_SCRIPT, Name};
        m_service->signalLog.clear();
        QProcess program, other;
        startProgram(program, "left", launcher);
        startProgram(other, "killed", launcher);
        QCOMPARE(m_service->error("killProgram", {Name, "killed"}), QString());
        QTRY_COMPARE(m_service->signalLog, QStringList("program_exited(killed)"));
        // The launcher's end is not the program's: that ends only when its input does.
        program.kill();
        QTRY_COMPARE(m_service->signalLog.mid(1), QStringList("program_exited(left)"));
        QVERIFY(!runs("left"));

        // An end while there was no service is told by the next one, which goes when nobody needs it.
        startProgram(program, "unseen", launcher);
        m_service->kill();
        program.kill();
        QTRY_VERIFY(!runs("unseen"));
        QVERIFY(m_service->start({"--idle-seconds", "1"}));
        QTRY_COMPARE(m_service->signalLog.mid(2), QStringList("program_exited(unseen)"));
        QVERIFY(QDir(m_service->dataDir() + "/running").isEmpty());
        // A program that starts while it is leaving is the next service's.
        QTRY_VERIFY_WITH_TIMEOUT(!m_service->isOnBus(), 10000);
        const QString stat = TestSupport::readFile("/proc/self/stat");
        const QJsonObject claim{{"bottle", Name},
                                {"name", "late"},
                                {"pid", qint64(::getpid())},
                                {"start", stat.section(") ", 1).section(' ', 19, 19)}};
        const QString file = m_service->write("running/1.start", QJsonDocument(claim).toJson());
        const bool hasLeft = TestSupport::waitUntil(
            [this] { return m_service->process().state() == QProcess::NotRunning; }, 10000);
        QVERIFY(QFile::remove(file) && hasLeft);
        QCOMPARE(m_service->process().exitCode(), 0);
        QVERIFY(m_service->start());
    }

    void deleteTouchesNothingOutside() {
        const QString letter = m_service->home().write("Documents/letter", "");
        const QString path = m_service->bottlePath(Name);
        QVERIFY(QFile::link(QFileInfo(letter).path(), path + "/drive_c/Documents"));
        QProcess program;
        startProgram(program, "running");
        m_service->signalLog.clear();
        QCOMPARE(m_service->error("delete", {Name}), QString());
        QTRY_COMPARE(m_service->signalLog, QStringList("bottles_deleted(" + Name + ')'));
        QVERIFY(!QFileInfo::exists(path));
        QCOMPARE(m_service->errorName("get", {Name}), "NoSuchBottle");
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
        QTRY_COMPARE_WITH_TIMEOUT(m_service->unfinished("bottles"), QStringList(), 30000);
        QVERIFY(QFile::exists(letter));
    }

    void deleteEndsALaunch_data() {
        QTest::addColumn<bool>("killsServer");
        QTest::newRow("early") << false;
        QTest::newRow("without a server") << true;
    }

    /// A launch without an id, at any stage.
    void deleteEndsALaunch() {
        QFETCH(bool, killsServer);
        QVERIFY(m_service->json("createBottles", {Name, ""})["ok"].toBool());
        const QString path = m_service->bottlePath(Name);
        QProcess program;
        program.setProcessEnvironment(m_service->environment());
        program.start(LAUNCHER_SCRIPT,
                      {Name, "--log-path", path + "/logs/x.txt", "cmd.exe", "/c", "set /p x="});
        const auto server = [&path] {
            for (const Processes::Entry& process : Processes().ofBottle(path)) {
                if (process.executable.startsWith("wineserver"))
                    return process.pid;
            }
            return pid_t(0);
        };
        const QDir running(m_service->dataDir() + "/running");
        pid_t found = 0;
        QTRY_VERIFY(killsServer ? (found = server()) > 0 : !running.entryList({"*.start"}).isEmpty());
        if (killsServer)
            QCOMPARE(::kill(found, SIGKILL), 0);
        QCOMPARE(m_service->error("delete", {Name}), QString());
        QTRY_VERIFY(program.state() == QProcess::NotRunning && isEmpty() && !QFileInfo::exists(path));
    }

    void killedWhileCreating() {
        QVERIFY(QDir(m_service->dataDir() + "/templates").removeRecursively());
        QDBusPendingCallWatcher creation(m_service->callLater("createBottles", {"killed", ""}));
        const QString directory = waitForCreation();
        m_service->kill();
        QTRY_VERIFY(creation.isFinished());
        QVERIFY(m_service->start());
        QTRY_VERIFY_WITH_TIMEOUT(m_service->unfinished("bottles").isEmpty() && !QFileInfo::exists(directory),
                                 30000);
        QVERIFY(Processes().ofBottle(directory).empty());
        QCOMPARE(m_service->text("list"), "[]");
    }

    void quitWhileCreating() {
        QDBusPendingCallWatcher creation(m_service->callLater("createBottles", {"quit", ""}));
        QDBusPendingCallWatcher waiting(m_service->callLater("createBottles", {"quit", ""}));
        waitForCreation();
        QCOMPARE(m_service->callManager("Quit").type(), QDBusMessage::ReplyMessage);
        QTRY_VERIFY_WITH_TIMEOUT(creation.isFinished() && waiting.isFinished(), 15000);
        QCOMPARE(outcome(creation.reply()), "0 0");
        QCOMPARE(waiting.reply().errorName(), "com.lumora.Error.Failed");
        QTRY_COMPARE_WITH_TIMEOUT(m_service->process().state(), QProcess::NotRunning, 15000);
        QCOMPARE(m_service->process().exitCode(), 0);
        QCOMPARE(m_service->unfinished("bottles") + m_service->unfinished("templates"), QStringList());
    }
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    ServiceBottleTest test;
    const int failures = QTest::qExec(&test, argc, argv);
    return failures == 0 && QStandardPaths::findExecutable("wine").isEmpty() ? 77 : failures;
}

#include "ServiceBottleTest.moc"
