#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

#include "core/base/Paths.h"
#include "e2e/InstalledApp.h"
#include "launch/monitor/WineExeProcessMonitor.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LaunchMs = 60000;
const char Bottle[] = "watched";

bool isToolRunning() {
    for (const QString& pid : QDir("/proc").entryList(QDir::Dirs)) {
        QFile commandLine("/proc/" + pid + "/cmdline");
        if (commandLine.open(QIODevice::ReadOnly) &&
            commandLine.readAll().contains("enum_process_window.exe") &&
            environmentOf(pid.toLongLong()).value("WINEPREFIX").endsWith(Bottle))
            return true;
    }
    return false;
}

}  // namespace

/// The monitor in a real bottle, beside programs that come, go, leave helpers and crash; and what their logs
/// tell.
class MonitorTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QTemporaryDir m_dir;

    void launch(QProcess* process, const QStringList& program) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("WINEDEBUG",
                           "err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,warn+file");
        process->setProcessEnvironment(environment);
        process->start(Paths::launcherScript(),
                       QStringList{Bottle, "--log-path", m_dir.filePath("log")} + program);
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        QVERIFY(callBottles("createBottles", {Bottle, ""}).contains("\"ok\":true"));
        // Once for Wine's files to be read: five looks without a program, and the monitor gives up.
        QProcess first;
        launch(&first, {sample("quit")});
        QVERIFY(first.waitForFinished(LaunchMs));
    }

    void cleanup() { callBottles("killWineServer", {Bottle}); }

    void helperTakesOver() {
        WineExeProcessMonitor monitor;
        QSignalSpy started(&monitor, &WineExeProcessMonitor::appStart);
        QSignalSpy quit(&monitor, &WineExeProcessMonitor::appQuit);
        QProcess program;
        launch(&program, {sample("spawn"), "Watched"});
        monitor.start(Bottle);
        QVERIFY(started.wait(LaunchMs));
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
        QVERIFY(monitor.windowSeen && !monitor.crashed && quit.isEmpty());
        QVERIFY(m_windows.close(m_windows.waitForTitle("Watched").id));
        QVERIFY(quit.wait(LaunchMs));
        QCOMPARE(started.size(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(!isToolRunning(), 15000);
    }

    /// Shorter than the interval between two looks at the bottle.
    void windowForAMoment() {
        WineExeProcessMonitor monitor;
        QSignalSpy started(&monitor, &WineExeProcessMonitor::appStart);
        QSignalSpy quit(&monitor, &WineExeProcessMonitor::appQuit);
        monitor.start(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(isToolRunning(), LaunchMs);
        QProcess program;
        launch(&program, {sample("window"), "Short", "flash"});
        QVERIFY(started.wait(LaunchMs));
        QVERIFY(quit.wait(LaunchMs));
        QCOMPARE(started.size(), 1);
        QVERIFY(program.state() == QProcess::NotRunning || program.waitForFinished(LaunchMs));
        QCOMPARE(program.exitCode(), 0);
        // Its end is on the way, which must not meet a wineserver that is being killed.
        QTRY_VERIFY_WITH_TIMEOUT(!isToolRunning(), 15000);
    }

    void crashWithoutEnd() {
        WineExeProcessMonitor monitor;
        QSignalSpy quit(&monitor, &WineExeProcessMonitor::appQuit);
        QProcess program;
        launch(&program, {sample("fault"), "crash"});
        monitor.start(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(monitor.crashed, LaunchMs);
        monitor.stop();
        monitor.stop();
        QTRY_VERIFY_WITH_TIMEOUT(!isToolRunning(), 15000);
        QVERIFY(quit.isEmpty());
        callBottles("killWineServer", {Bottle});
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
        WineLogParser parser;
        QVERIFY(parser.parseFile(m_dir.filePath("log")) & LogCrash);
    }

    /// The watch before has just been given up, and its thread is about to end.
    void startIsTimed() {
        const QString id = "01234567-89ab-cdef-0123-456789abcdef";
        const QJsonObject record{{"id", id}, {"name", "Timed"}, {"path", sample("window")}};
        callBottles("updateExternalProgram",
                    {Bottle, QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact))});
        auto* manager = AppBootingStateManager::instance();
        QSignalSpy results(manager, &AppBootingStateManager::launchResult);
        QProcess program;
        launch(&program, {"--uuid", id, "Timed"});
        const quint32 window = m_windows.waitForTitle("Timed", LaunchMs).id;
        QVERIFY(window);
        manager->startRecording(Bottle, "other");
        manager->finishRecording("other", false);
        manager->startRecording(Bottle, id);
        QVERIFY(waitUntil([&] {
            runProcess("xprop", {"-root", "-f", "_CHANGED", "8s", "-set", "_CHANGED", ""});
            return !results.isEmpty();
        }));
        QVERIFY(results[0][0] == id && results[0][1] == true);
        QVERIFY(m_windows.close(window));
        const QString log = qEnvironmentVariable("XDG_STATE_HOME") + "/lumora-event-log/cellarix.jsonl";
        QTRY_VERIFY_WITH_TIMEOUT(readFile(log).contains("\"exename\":\"window.exe\""), LaunchMs);
        QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, LaunchMs);
    }

    /// One closes its window and stays, the other never shows any: both are given up.
    void lingering() {
        for (const QStringList& program :
             {QStringList{sample("window"), "Lingers", "stay"}, {sample("fault"), "wait"}}) {
            WineExeProcessMonitor monitor;
            QSignalSpy started(&monitor, &WineExeProcessMonitor::appStart);
            QSignalSpy quit(&monitor, &WineExeProcessMonitor::appQuit);
            QProcess process;
            launch(&process, program);
            monitor.start(Bottle);
            const bool hasWindow = program[1] == "Lingers";
            if (hasWindow) {
                QVERIFY(started.wait(LaunchMs));
                QVERIFY(m_windows.close(m_windows.waitForTitle("Lingers").id));
            }
            QVERIFY(quit.wait(LaunchMs));
            QCOMPARE(started.size(), int(hasWindow));
            QCOMPARE(process.state(), QProcess::Running);
            callBottles("killWineServer", {Bottle});
            QTRY_COMPARE(process.state(), QProcess::NotRunning);
        }
    }

    /// It is in use while it has no window on the desktop.
    void closedToTheTray() {
        WineExeProcessMonitor monitor;
        QSignalSpy started(&monitor, &WineExeProcessMonitor::appStart);
        QSignalSpy quit(&monitor, &WineExeProcessMonitor::appQuit);
        QStringList looks;
        connect(&monitor, &WineExeProcessMonitor::processListUpdate, this,
                [&](const auto&, const auto& windows) { looks << windows.value(0).second; });
        QProcess program;
        launch(&program, {sample("window"), "In the tray", "tray"});
        monitor.start(Bottle);
        QVERIFY(started.wait(LaunchMs));
        const quint32 window = m_windows.waitForTitle("In the tray").id;
        QVERIFY(m_windows.close(window) && m_windows.waitUntilGone(window));
        looks.clear();
        QTRY_VERIFY_WITH_TIMEOUT(looks.size() >= 3 || !quit.isEmpty(), LaunchMs);
        QCOMPARE(looks.mid(0, 3), QStringList({"In the tray", "In the tray", "In the tray"}));
        callBottles("killWineServer", {Bottle});
        QTRY_COMPARE_WITH_TIMEOUT(quit.size(), 1, LaunchMs);
        QCOMPARE(started.size(), 1);
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
    }

    /// Neither the end of one watch nor the taskkill that it leaves ends another watch of the bottle.
    void oneStopsAndStartsAgain() {
        QProcess program;
        launch(&program, {sample("fault"), "wait"});
        WineExeProcessMonitor one, other;
        int cycles = 0, otherCycles = 0;
        connect(&one, &WineExeProcessMonitor::processListUpdate, this, [&] { ++cycles; });
        connect(&other, &WineExeProcessMonitor::processListUpdate, this, [&] { ++otherCycles; });
        QSignalSpy quit(&one, &WineExeProcessMonitor::appQuit);
        QSignalSpy otherQuit(&other, &WineExeProcessMonitor::appQuit);
        const auto watch = [&](int count) {
            cycles = otherCycles = 0;
            const auto hasQuit = [&] { return quit.size() + otherQuit.size() > 0; };
            QTRY_VERIFY_WITH_TIMEOUT(std::min(cycles, otherCycles) >= count || hasQuit(), LaunchMs);
            QVERIFY(!hasQuit());
        };
        one.start(Bottle);
        other.start(Bottle);
        watch(1);
        one.stop();
        one.start(Bottle);
        watch(4);
        one.stop();
        other.stop();
        one.start(Bottle);
        other.start(Bottle);
        watch(4);
        callBottles("killWineServer", {Bottle});
        QTRY_COMPARE(program.state(), QProcess::NotRunning);
    }

    void theBottleDies() {
        WineExeProcessMonitor monitor;
        QSignalSpy quit(&monitor, &WineExeProcessMonitor::appQuit);
        monitor.start(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(isToolRunning(), LaunchMs);
        callBottles("killWineServer", {Bottle});
        QVERIFY(!quit.isEmpty() || quit.wait(LaunchMs));
        QCOMPARE(quit.size(), 1);
    }
};

QTEST_GUILESS_MAIN(MonitorTest)
#include "MonitorTest.moc"
