#include "launch/WineLauncher.h"

#include <QJsonObject>
#include <QtTest>

#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {
const char Bottle[] = "notes";
const char Uuid[] = "0b6e6f9e-0000-4000-8000-000000000001";
}  // namespace

/// What the launch script is handed. The script itself refuses the bottle, which does not exist on disk.
class WineLauncherTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    PrivateBus m_bus;
    FakeBottleService m_service;

    void storeProgram(const QString& name) {
        m_service.setBottle(Bottle,
                            {{"Path", m_home.path() + "/notes"},
                             {"External_Programs", QJsonObject{{Uuid, QJsonObject{{"name", name}}}}}});
    }
    QString variable(const WineLauncher& launcher, const QString& name) const {
        return launcher.processEnvironment().value(name);
    }

private Q_SLOTS:
    void initTestCase() {
        qputenv("GIO_LAUNCHED_DESKTOP_FILE", "/x.desktop");
        qputenv("GIO_LAUNCHED_DESKTOP_FILE_PID", "1");
        QVERIFY(m_service.start());
        storeProgram("Notes");
    }

    void optionsStandInOrder() {
        WineLauncher launcher(Bottle, this);
        launcher.setCli(true);
        launcher.setShowLogs(true);
        launcher.setWait(true);
        launcher.launchExe("/tmp/My Game.exe", {"-a", "--uuid"});
        QCOMPARE(launcher.arguments(),
                 (QStringList{Bottle, "--log-path", m_home.path() + "/notes/logs/wine-My Game.exe.txt",
                              "--cli", "--show-logs", "--wait", "/tmp/My Game.exe", "-a", "--uuid"}));
        QCOMPARE(variable(launcher, "WINE_WMCLASS"), QString("My Game.exe"));
        QCOMPARE(variable(launcher, "ATTACH_FILE_DIALOG"), QString("1"));
        QVERIFY(!launcher.processEnvironment().contains("GIO_LAUNCHED_DESKTOP_FILE"));
        QVERIFY(!launcher.processEnvironment().contains("GIO_LAUNCHED_DESKTOP_FILE_PID"));
        launcher.waitForFinished();
        launcher.launchExe("/tmp/other.exe", {});
        QVERIFY2(launcher.logPath().endsWith("wine-My Game.exe.txt"),
                 "a second launch keeps the first log path");
        launcher.waitForFinished();
    }

    void storedProgram_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("windowClass");
        QTest::newRow("64 characters") << QString(64, 'n') << QString(64, 'n');
        QTest::newRow("65 characters") << QString(65, 'n') << QString(64, 'n') + "...";
    }

    void storedProgram() {
        QFETCH(QString, name);
        QFETCH(QString, windowClass);
        storeProgram(name);
        const QString desktopFile = m_home.write(QString("Desktop/%1.desktop").arg(Uuid), "[Desktop Entry]");
        WineLauncher launcher(Bottle, this);
        launcher.launchProgram(Uuid);
        QCOMPARE(launcher.arguments(),
                 (QStringList{Bottle, "--log-path",
                              m_home.path() + "/notes/logs/wine-program-" + Uuid + ".txt", "--uuid", Uuid}));
        QCOMPARE(variable(launcher, "WINE_WMCLASS"), windowClass);
        QCOMPARE(variable(launcher, "GIO_LAUNCHED_DESKTOP_FILE"), desktopFile);
        launcher.waitForFinished();
    }

    void commandHasNoOptions() {
        WineLauncher launcher(Bottle, this);
        launcher.setWait(true);
        launcher.launchCommand("regedit.exe \"Z:\\a b.reg\"");
        QCOMPARE(launcher.arguments(), (QStringList{Bottle, "regedit.exe \"Z:\\a b.reg\""}));
        QVERIFY(launcher.logPath().isEmpty());
        launcher.waitForFinished();

        LogCapture log;
        WineLauncher bottleless(this);
        bottleless.launchCommand("winecfg.exe");
        QVERIFY(log.contains("No bottle selected"));
        QCOMPARE(bottleless.state(), QProcess::NotRunning);
    }

    void unknownBottle() {
        LogCapture log;
        WineLauncher launcher("gone", this);
        QVERIFY(log.contains("Bottle  gone  not exists"));
        launcher.launchExe("/tmp/a.exe", {});
        QCOMPARE(launcher.logPath(), QString("/wine-a.exe.txt"));
        launcher.waitForFinished();
    }

    void logNameFitsTheFileSystem() {
        WineLauncher launcher(Bottle, this);
        launcher.launchExe("/tmp/" + QString(83, QChar(0x7a0b)) + ".exe", {});
        QVERIFY(QFileInfo(launcher.logPath()).fileName().toUtf8().size() <= 255);
        launcher.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(WineLauncherTest)
#include "WineLauncherTest.moc"
