#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

#include "core/base/Paths.h"
#include "e2e/InstalledApp.h"
#include "launch/monitor/WineExeProcessMonitor.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"
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

/// The monitor in a real bottle, with programs that start helpers, stay, crash and end.
class MonitorTest : public QObject {
    Q_OBJECT

    /// A monitor, what it reports, and the program that it watches.
    struct Watch {
        WineExeProcessMonitor monitor;
        QSignalSpy started{&monitor, &WineExeProcessMonitor::appStart};
        QSignalSpy quit{&monitor, &WineExeProcessMonitor::appQuit};
        QProcess program;
    };

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
        // Reads Wine's files once: the monitor gives up after five cycles without a program.
        QProcess first;
        launch(&first, {sample("quit")});
        QVERIFY(first.waitForFinished(LaunchMs));
    }

    void cleanup() { callBottles("killWineServer", {Bottle}); }

    void helperTakesOver() {
        Watch watch;
        launch(&watch.program, {sample("spawn"), "Watched"});
        watch.monitor.start(Bottle);
        QVERIFY(watch.started.wait(LaunchMs));
        QTRY_COMPARE(watch.program.state(), QProcess::NotRunning);
        QVERIFY(watch.monitor.windowSeen && !watch.monitor.crashed && watch.quit.isEmpty());
        QVERIFY(m_windows.close(m_windows.waitForTitle("Watched").id));
        QVERIFY(watch.quit.wait(LaunchMs));
        QCOMPARE(watch.started.size(), 1);
        QTRY_VERIFY_WITH_TIMEOUT(!isToolRunning(), 15000);
    }

    /// Shown for less time than one cycle of the monitor.
    void windowForAMoment() {
        Watch watch;
        watch.monitor.start(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(isToolRunning(), LaunchMs);
        launch(&watch.program, {sample("window"), "Short", "flash"});
        QVERIFY(watch.started.wait(LaunchMs));
        QVERIFY(watch.quit.wait(LaunchMs));
        QCOMPARE(watch.started.size(), 1);
        QVERIFY(watch.program.state() == QProcess::NotRunning || watch.program.waitForFinished(LaunchMs));
        QCOMPARE(watch.program.exitCode(), 0);
        // The monitor's own end must not meet a wineserver that is being killed.
        QTRY_VERIFY_WITH_TIMEOUT(!isToolRunning(), 15000);
    }

    void crashWithoutEnd() {
        Watch watch;
        launch(&watch.program, {sample("fault"), "crash"});
        watch.monitor.start(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(watch.monitor.crashed, LaunchMs);
        watch.monitor.stop();
        watch.monitor.stop();
        QTRY_VERIFY_WITH_TIMEOUT(!isToolRunning(), 15000);
        QVERIFY(watch.quit.isEmpty());
        callBottles("killWineServer", {Bottle});
        QTRY_COMPARE(watch.program.state(), QProcess::NotRunning);
        WineLogParser parser;
        QVERIFY(parser.parseFile(m_dir.filePath("log")) & LogCrash);
    }

    /// Closes its window and stays, with one that was never shown.
    void lingering() {
        Watch watch;
        launch(&watch.program, {sample("window"), "Lingers", "stay"});
        watch.monitor.start(Bottle);
        QVERIFY(watch.started.wait(LaunchMs));
        QVERIFY(m_windows.close(m_windows.waitForTitle("Lingers").id));
        QVERIFY(watch.quit.wait(LaunchMs));
        QCOMPARE(watch.started.size(), 1);
        QCOMPARE(watch.program.state(), QProcess::Running);
        callBottles("killWineServer", {Bottle});
        QTRY_COMPARE(watch.program.state(), QProcess::NotRunning);
    }

    /// A program whose window hides in the tray is still in use.
    void closedToTheTray() {
        Watch watch;
        QStringList titles;
        connect(&watch.monitor, &WineExeProcessMonitor::processListUpdate, this,
                [&](const auto&, const auto& windows) { titles << windows.value(0).second; });
        launch(&watch.program, {sample("window"), "In the tray", "tray"});
        watch.monitor.start(Bottle);
        QVERIFY(watch.started.wait(LaunchMs));
        const quint32 window = m_windows.waitForTitle("In the tray").id;
        QVERIFY(m_windows.close(window) && m_windows.waitUntilGone(window));
        titles.clear();
        QTRY_VERIFY_WITH_TIMEOUT(titles.size() >= 3 || !watch.quit.isEmpty(), LaunchMs);
        QCOMPARE(titles.mid(0, 3), QStringList({"In the tray", "In the tray", "In the tray"}));
        callBottles("killWineServer", {Bottle});
        QTRY_COMPARE_WITH_TIMEOUT(watch.quit.size(), 1, LaunchMs);
        QCOMPARE(watch.started.size(), 1);
        QTRY_COMPARE(watch.program.state(), QProcess::NotRunning);
    }

    /// Neither the end of one monitor nor its taskkill ends another monitor of the same bottle.
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
        Watch watch;
        watch.monitor.start(Bottle);
        QTRY_VERIFY_WITH_TIMEOUT(isToolRunning(), LaunchMs);
        callBottles("killWineServer", {Bottle});
        QVERIFY(!watch.quit.isEmpty() || watch.quit.wait(LaunchMs));
        QCOMPARE(watch.quit.size(), 1);
    }
};

QTEST_GUILESS_MAIN(MonitorTest)
#include "MonitorTest.moc"
