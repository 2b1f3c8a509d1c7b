#include "launch/script/WineLauncher.h"

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

/// The arguments and variables of the launch script, which itself fails: the bottle is not on the disk.
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
        const QString log = m_home.path() + "/notes/logs/wine-My Game.exe.txt";
        QCOMPARE(launcher.arguments(), QStringList({Bottle, "--log-path", log, "--cli", "--show-logs",
                                                    "--wait", "/tmp/My Game.exe", "-a", "--uuid"}));
        QCOMPARE(variable(launcher, "WINE_WMCLASS"), "My Game.exe");
        QCOMPARE(variable(launcher, "ATTACH_FILE_DIALOG"), "1");
        QVERIFY(launcher.environment().filter("GIO_LAUNCHED_DESKTOP_FILE").isEmpty());
        launcher.waitForFinished();
        launcher.launchExe("/tmp/other.exe", {});
        QCOMPARE(launcher.logPath(), log);  // a second launch keeps the first one's
        launcher.waitForFinished();
    }

    void storedProgram() {
        const QString desktopFile = m_home.write(QString("Desktop/%1.desktop").arg(Uuid), "[Desktop Entry]");
        const QString log = m_home.path() + "/notes/logs/wine-program-" + Uuid + ".txt";
        const QString longest(64, 'n');
        for (const QString& name : {longest, longest + 'n'}) {
            storeProgram(name);
            WineLauncher launcher(Bottle, this);
            launcher.launchProgram(Uuid);
            QCOMPARE(launcher.arguments(), QStringList({Bottle, "--log-path", log, "--uuid", Uuid}));
            QCOMPARE(variable(launcher, "WINE_WMCLASS"), name == longest ? longest : longest + "...");
            QCOMPARE(variable(launcher, "GIO_LAUNCHED_DESKTOP_FILE"), desktopFile);
            launcher.waitForFinished();
        }
    }

    void commandHasNoOptions() {
        WineLauncher launcher(Bottle, this);
        launcher.setWait(true);
        launcher.launchCommand("regedit.exe \"Z:\\a b.reg\"");
        QCOMPARE(launcher.arguments(), QStringList({Bottle, "regedit.exe \"Z:\\a b.reg\""}));
        QVERIFY(launcher.logPath().isEmpty());
        launcher.waitForFinished();
    }

    void oddBottlesAndFiles() {
        LogCapture log;
        WineLauncher bottleless(this);
        bottleless.launchCommand("winecfg.exe");
        QVERIFY(log.contains("No bottle selected"));
        QCOMPARE(bottleless.state(), QProcess::NotRunning);
        WineLauncher unknown("gone", this);
        QVERIFY(log.contains("Bottle  gone  not exists"));
        unknown.launchExe("/tmp/a.exe", {});
        QCOMPARE(unknown.logPath(), "/wine-a.exe.txt");
        unknown.waitForFinished();
        WineLauncher launcher(Bottle, this);
        launcher.launchExe("/tmp/" + QString(83, QChar(0x7a0b)) + ".exe", {});
        QVERIFY(QFileInfo(launcher.logPath()).fileName().toUtf8().size() <= 255);  // as the file system wants
        launcher.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(WineLauncherTest)
#include "WineLauncherTest.moc"
