#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/Processes.h"

namespace {

// Made of what a shell, a YAML file and a C locale would break on.
const QString Name = QString::fromUtf8("安装 \"a\" 'b' $(c); #d: .exe") + QString(32, 'f');

QJsonObject resultOf(const QDBusMessage& reply) {
    return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList workingDirectories(const QString& root) {
    return QDir(root).entryList({".creating-*", ".deleting-*"}, QDir::Dirs | QDir::Hidden);
}

}  // namespace

/// One real bottle from its making to its end, and makings that are interrupted.
class tst_ServiceBottle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void createTwiceAtOnce();
    void recordAndLaunchData();
    void runCommand();
    void killProgramSparesTheOthers();
    void endIsTold();
    void deleteTouchesNothingOutside();
    void killedWhileCreating();
    void quitWhileCreating();

private:
    QString waitForCreation();
    void startProgram(QProcess& process, const QString& id, const QStringList& launcher = {"wine"});

    std::unique_ptr<ServiceFixture> m_service;
};

void tst_ServiceBottle::initTestCase() {
    if (QStandardPaths::findExecutable("wine").isEmpty())
        QSKIP("wine-is-not-installed");
    m_service = std::make_unique<ServiceFixture>();
    QVERIFY(m_service->start());
}

void tst_ServiceBottle::createTwiceAtOnce() {
    QCOMPARE(resultOf(m_service->call("createBottles", {Name, "no-such-runner"}))["ok"], QJsonValue(false));
    QVERIFY(workingDirectories(m_service->bottlePath(".")).isEmpty());

    QDBusPendingCallWatcher first(m_service->callLater("createBottles", {Name, ""}));
    QDBusPendingCallWatcher second(m_service->callLater("createBottles", {Name, "lumora-wine10-stable"}));
    waitForCreation();
    QElapsedTimer elapsed;
    elapsed.start();
    QCOMPARE(m_service->call("list").arguments()[0].toString(), QString("[]"));
    QCOMPARE(m_service->call("get", {Name}).errorName(), QString("com.lumora.Error.NoSuchBottle"));
    QVERIFY(elapsed.elapsed() < 2000);
    QVERIFY(!first.isFinished());
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished() && second.isFinished(), 120000);
    QCOMPARE(resultOf(first.reply())["ok"], QJsonValue(true));
    QCOMPARE(resultOf(first.reply())["created"], QJsonValue(true));
    QCOMPARE(resultOf(second.reply())["ok"], QJsonValue(true));
    QCOMPARE(resultOf(second.reply())["created"], QJsonValue(false));
    QVERIFY(workingDirectories(m_service->bottlePath(".")).isEmpty());
}

void tst_ServiceBottle::recordAndLaunchData() {
    const QString path = m_service->bottlePath(Name);
    const QJsonObject record = resultOf(m_service->call("get", {Name}));
    QCOMPARE(record["Path"].toString(), path);
    QCOMPARE(record["Runner"].toString(), QString("lumora-wine10-stable"));
    QCOMPARE(record["Name"].toString(), Name);
    for (const char* part :
         {"/drive_c/windows/system32/kernel32.dll", "/dosdevices/c:", "/logs", "/system.reg"})
        QVERIFY2(QFileInfo::exists(path + part), part);
    QFile file(path + "/launch.json");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject data = QJsonDocument::fromJson(file.readAll()).object();
    QCOMPARE(data["path"].toString(), path);
    QCOMPARE(data["env"].toObject()["WINEPREFIX"].toString(), path);
    QVERIFY(QFileInfo(data["wine"].toString()).isExecutable());
    QVERIFY(QFileInfo(data["wineserver"].toString()).isExecutable());
    QVERIFY(
        !m_service->call("getRunnerVersion", {"lumora-wine10-stable"}).arguments()[0].toString().isEmpty());
}

void tst_ServiceBottle::runCommand() {
    const QString mark = m_service->home() + "/touched";
    const QDBusMessage reply = m_service->call(
        "run_command", {Name, "cmd.exe /c echo \"two words\" ; touch " + mark + " $(touch " + mark + ')'});
    QCOMPARE(reply.errorMessage(), QString());
    const QString log = m_service->bottlePath(Name) + "/logs/command-cmd.exe.txt";
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(log).contains("two words"), 30000);
    QVERIFY(!QFileInfo::exists(mark));
}

void tst_ServiceBottle::startProgram(QProcess& process, const QString& id, const QStringList& launcher) {
    QProcessEnvironment environment = m_service->environment();
    environment.insert("LC_ALL", "C.UTF-8");
    environment.insert("WINEPREFIX", m_service->bottlePath(Name));
    environment.insert("_CXB_WINE_PROGRAM_UUID", id);
    process.setProcessEnvironment(environment);
    process.start(launcher[0], launcher.mid(1) + QStringList{"cmd.exe", "/c", "echo ready & set /p x="});
    QByteArray output;
    const auto isReady = [&] {
        output += process.readAllStandardOutput();
        return output.contains("ready");
    };
    QTRY_VERIFY_WITH_TIMEOUT(isReady(), 30000);
}

void tst_ServiceBottle::killProgramSparesTheOthers() {
    const Processes processes;
    const QString path = m_service->bottlePath(Name);
    QCOMPARE(m_service->call("killWineServer", {Name}).errorMessage(), QString());
    QVERIFY(processes.ofBottle(path).empty());
    // The first one also starts the wineserver and the bottle's own services, which then carry its id.
    QProcess first;
    QProcess second;
    startProgram(first, "first");
    startProgram(second, "second");
    QCOMPARE(m_service->call("killProgram", {Name, "first"}).errorMessage(), QString());
    QVERIFY(processes.ofProgram(path, "first").empty());
    QTRY_COMPARE(first.state(), QProcess::NotRunning);
    QCOMPARE(second.state(), QProcess::Running);
    QVERIFY(!processes.ofProgram(path, "second").empty());
    QCOMPARE(m_service->call("killWineServer", {Name}).errorMessage(), QString());
    QTRY_COMPARE(second.state(), QProcess::NotRunning);
    QVERIFY(processes.ofBottle(path).empty());
}

void tst_ServiceBottle::endIsTold() {
    const QStringList launcher{LAUNCHER_SCRIPT, Name};
    const auto runs = [this](const QString& id) {
        return !Processes().ofProgram(m_service->bottlePath(Name), id).empty();
    };
    m_service->signalLog.clear();
    QProcess program;
    startProgram(program, "left", launcher);
    QProcess other;
    startProgram(other, "killed", launcher);
    QCOMPARE(m_service->call("killProgram", {Name, "killed"}).errorMessage(), QString());
    QTRY_COMPARE(m_service->signalLog, QStringList("program_exited(killed)"));
    // The launcher's end is not the program's: that ends only when its input does.
    program.kill();
    QTRY_COMPARE(m_service->signalLog.size(), 2);
    QCOMPARE(m_service->signalLog[1], QString("program_exited(left)"));
    QVERIFY(!runs("left"));

    // An end while there was no service is told by the next one, which goes when nobody needs it.
    startProgram(program, "unseen", launcher);
    m_service->kill();
    program.kill();
    QTRY_VERIFY(!runs("unseen"));
    QVERIFY(m_service->start({"--idle-seconds", "1"}));
    QTRY_COMPARE(m_service->signalLog.mid(2), QStringList("program_exited(unseen)"));
    QVERIFY(QDir(m_service->dataDir() + "/running").isEmpty());
    QTRY_VERIFY(!m_service->isOnBus());
    QTRY_COMPARE(m_service->process().state(), QProcess::NotRunning);
    QCOMPARE(m_service->process().exitCode(), 0);
    QVERIFY(m_service->start());
}

void tst_ServiceBottle::deleteTouchesNothingOutside() {
    QFile document(m_service->home() + "/Documents/letter");
    QVERIFY(QDir().mkpath(m_service->home() + "/Documents"));
    QVERIFY(document.open(QIODevice::WriteOnly));
    document.close();
    const QString path = m_service->bottlePath(Name);
    QVERIFY(QFile::link(m_service->home() + "/Documents", path + "/drive_c/Documents"));
    QProcess program;
    startProgram(program, "running");
    m_service->signalLog.clear();
    QCOMPARE(m_service->call("delete", {Name}).errorMessage(), QString());
    QTRY_COMPARE(m_service->signalLog, QStringList("bottles_deleted(" + Name + ')'));
    QVERIFY(!QFileInfo::exists(path));
    QCOMPARE(m_service->call("get", {Name}).errorName(), QString("com.lumora.Error.NoSuchBottle"));
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QTRY_VERIFY_WITH_TIMEOUT(workingDirectories(m_service->bottlePath(".")).isEmpty(), 30000);
    QVERIFY(document.exists());
}

/// Until Wine works on the template, which there must not be yet.
QString tst_ServiceBottle::waitForCreation() {
    const QString root = m_service->dataDir() + "/templates";
    const auto directory = [&root] { return root + '/' + workingDirectories(root).value(0); };
    [&] {
        QTRY_VERIFY_WITH_TIMEOUT(
            !workingDirectories(root).isEmpty() && !Processes().ofBottle(directory()).empty(), 30000);
    }();
    return directory();
}

void tst_ServiceBottle::killedWhileCreating() {
    QVERIFY(QDir(m_service->dataDir() + "/templates").removeRecursively());
    QDBusPendingCallWatcher creation(m_service->callLater("createBottles", {"killed", ""}));
    const QString directory = waitForCreation();
    const QString root = m_service->bottlePath(".");
    m_service->kill();
    QTRY_VERIFY(creation.isFinished());
    QVERIFY(m_service->start());
    QTRY_VERIFY_WITH_TIMEOUT(workingDirectories(root).isEmpty() && !QFileInfo::exists(directory), 30000);
    QVERIFY(Processes().ofBottle(directory).empty());
    QCOMPARE(m_service->call("list").arguments()[0].toString(), QString("[]"));
}

void tst_ServiceBottle::quitWhileCreating() {
    QDBusPendingCallWatcher creation(m_service->callLater("createBottles", {"quit", ""}));
    QDBusPendingCallWatcher waiting(m_service->callLater("createBottles", {"quit", ""}));
    waitForCreation();
    QCOMPARE(m_service->callManager("Quit").type(), QDBusMessage::ReplyMessage);
    QTRY_VERIFY_WITH_TIMEOUT(creation.isFinished() && waiting.isFinished(), 15000);
    QCOMPARE(resultOf(creation.reply())["ok"], QJsonValue(false));
    QCOMPARE(waiting.reply().errorName(), QString("com.lumora.Error.Failed"));
    QTRY_COMPARE_WITH_TIMEOUT(m_service->process().state(), QProcess::NotRunning, 15000);
    QCOMPARE(m_service->process().exitCode(), 0);
    QVERIFY(workingDirectories(m_service->bottlePath(".")).isEmpty());
    QVERIFY(workingDirectories(m_service->dataDir() + "/templates").isEmpty());
    m_service.reset();
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    tst_ServiceBottle test;
    const int failures = QTest::qExec(&test, argc, argv);
    return failures == 0 && QStandardPaths::findExecutable("wine").isEmpty() ? 77 : failures;
}

#include "tst_servicebottle.moc"
