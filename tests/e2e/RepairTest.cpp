#include <unistd.h>
#include <csignal>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "e2e/LaunchProbe.h"
#include "support/Table.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

const char NoWindow[] = "msg 1 Seems application has finished, exit code: %1, and app not been launched";
const char NothingFixed[] = "msg 1 No any fixing applied, launch failed";

QStringList bottles() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir(data + "/lumora-wine-bottles/bottles").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

QString bottleOf(const QString& program) {
    for (const QString& bottle : bottles()) {
        if (bottle.startsWith(program))
            return bottle;
    }
    return {};
}

/// Of this session; how many.
int killAll(const QString& word) {
    int count = 0;
    for (const QString& pid : QDir("/proc").entryList(QDir::Dirs)) {
        QFile commandLine("/proc/" + pid + "/cmdline");
        if (pid.toLongLong() <= 0 || pid.toLongLong() == ::getpid() || !commandLine.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = commandLine.readAll();
        const bool isSame = environmentOf(pid.toLongLong()).value("HOME").toLocal8Bit() == qgetenv("HOME");
        if (isSame && text.contains(word.toUtf8()) && !text.contains("scripts/session"))
            count += ::kill(pid_t(pid.toLongLong()), SIGKILL) == 0;
    }
    return count;
}

int processesIn(const QString& bottle) {
    int count = 0;
    for (const QString& pid : QDir("/proc").entryList(QDir::Dirs)) {
        if (pid.toLongLong() > 0 &&
            environmentOf(pid.toLongLong()).value("WINEPREFIX").endsWith('/' + bottle))
            ++count;
    }
    return count;
}

}  // namespace

/// Whole launches on real Wine: programs that lack something and get it, and every other way to end.
class RepairTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QTemporaryDir m_dir;
    QString m_mirror;

    QString program(const QString& name, const QString& as = {}) {
        return sampleAs(name, m_dir.path() + "/programs", (as.isEmpty() ? name : as) + ".exe");
    }
    /// A name and the lines that must come, in this order among others.
    static void verifyOrder(const QStringList& lines, const QStringList& wanted) {
        int at = 0;
        for (const QString& line : wanted) {
            const int found = lines.indexOf(line, at);
            QVERIFY2(found >= 0, qPrintable("no \"" + line + "\" behind line " + QString::number(at) +
                                            " of\n" + lines.join('\n')));
            at = found + 1;
        }
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("needs_vcamp140").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        m_mirror = useMirror({{"sqlite3", R"([{"extract": "sqlite3.tar", "files": ["sqlite3.dll"]}])"},
                              {"vcredist2022", R"([{"extract": "vcamp140.tar", "files": ["vcamp140.dll"]},
                                                   {"override": ["vcamp140"], "mode": "native,builtin"}])"}});
        for (const char* name : {"sqlite3", "vcamp140"}) {
            QProcess tar;
            tar.start("tar", {"-C", QFileInfo(sample("window")).path(), "-cf", m_mirror + '/' + name + ".tar",
                              QString(name) + ".dll"});
            QVERIFY(tar.waitForFinished() && tar.exitCode() == 0);
        }
    }
    void cleanup() {
        for (const QString& bottle : bottles())
            callBottles("killWineServer", {bottle});
    }

    /// A component that is not to be had is tried once. First, since what was fetched is kept.
    void notRepaired() {
        QVERIFY(QFile::rename(m_mirror + "/sqlite3.tar", m_mirror + "/away.tar"));
        LaunchProbe probe({"--auto-fix", program("needs_sqlite3")});
        QCOMPARE(probe.waitForEnd(), 1);
        QVERIFY(QFile::rename(m_mirror + "/away.tar", m_mirror + "/sqlite3.tar"));
        verifyOrder(probe.lines(), {"runFailed 1 0", "msg 2 Setup Failed", NothingFixed, "runFailed 0 0"});
        QCOMPARE(probe.lines().count("Fixing"), 1);
    }

    /// The first repair uncovers a second missing library.
    void repairedTwice() {
        LaunchProbe probe({"--auto-fix", program("needs_vcamp140")});
        QVERIFY(probe.waitFor("windowPopuped", 180000));
        QVERIFY(m_windows.close(m_windows.waitForTitle("Cellarix sample window").id));
        QCOMPARE(probe.waitForEnd(), 0);
        verifyOrder(probe.lines(),
                    {"step 1 Initializing Envrironment", "msg 1 Choose wine version: lumora-wine10-stable",
                     "msg 2 Launching needs_vcamp140.exe", "msg 1 Parsed wine error logs:",
                     "msg 1 Try to install components:", "msg 1 vcredist2022", QString(NoWindow).arg(53),
                     "runFailed 1 0", "Fixing", "msg 2 Fix: install components vcredist2022",
                     "msg 2 Setup Success", "step 1 Launching", "msg 1 sqlite3", "Fixing",
                     "msg 2 Fix: install components sqlite3", "msg 2 Setup Success", "windowPopuped",
                     "msg 1 Seems application has finished, exit code: 0", "runSuccessed"});
        const QString text = callBottles("get", {bottleOf("needs_vcamp140")});
        const QJsonObject record = QJsonDocument::fromJson(text.toUtf8()).object();
        QCOMPARE(QJsonDocument(record["Installed_Dependencies"].toArray()).toJson(QJsonDocument::Compact),
                 QByteArray("[\"vcredist2022\",\"sqlite3\"]"));
    }

    void endings_data() {
        const Table<QString, QString, int, QStringList> row("sampleName", "option", "status", "lines");
        // The catalogue can bring it, so it is offered before it is there.
        const QString staging =
            "msg 1 Application is not running as expected, try to using "
            "lumora-wine-staging and relaunch";
        row("quit", "quit", "", 2, {QString(NoWindow).arg(0), staging, "runFailed 1 0"});
        row("fault-window-font", "fault", "", 2,
            {"windowPopuped", "msg 1 This application missing fonts: simsun.ttc",
             "msg 1 Seems application has finished, exit code: 0", "runFailed 1 1"});
        row("fault-font", "fault", "--auto-fix", 1,
            {"runFailed 1 0", "Fixing", "step 1 Launching", NothingFixed, "runFailed 0 0"});
        row("fault-wait", "fault", "", 2, {staging, "runFailed 1 0"});
        row("console", "console", "", 0,
            {"msg 1 This application is a console application, launch in terminal",
             "msg 1 Seems application has finished, exit code: 0", "runSuccessed"});
    }
    void endings() {
        QFETCH(QString, sampleName);
        const QString name = QTest::currentDataTag();
        QFETCH(QString, option);
        QFETCH(int, status);
        QFETCH(QStringList, lines);
        LaunchProbe probe((option.isEmpty() ? QStringList() : QStringList{option}) +
                          QStringList{program(sampleName, name)});
        QCOMPARE(probe.waitForEnd(180000), status);
        verifyOrder(probe.lines(), lines);
        QCOMPARE(probe.lines().filter(QRegularExpression("^run")).last(), lines.last());
    }

    /// Wine's own dialog is a window too, so that the program counts as one that ran.
    void crashes() {
        LaunchProbe probe({"--auto-fix", program("fault", "fault-crash")});
        QVERIFY(probe.waitFor("windowPopuped", 180000));
        QVERIFY(m_windows.close(m_windows.waitForTitle("Program Error").id));
        QCOMPARE(probe.waitForEnd(), 0);
        // The script's code, or 0 where the monitor was the first to see the end.
        const QRegularExpression end("exit code: [05], and crashed$");
        QCOMPARE(probe.lines().filter(end).size(), 1);
        QCOMPARE(probe.lines().last(), QString("runSuccessed"));
    }

    /// Its first process goes before the window is there.
    void helperTakesOver() {
        program("window");
        LaunchProbe probe({program("spawn")});
        QVERIFY(probe.waitFor("windowPopuped", 180000));
        QVERIFY(m_windows.close(m_windows.waitForTitle("Cellarix sample window").id));
        QCOMPARE(probe.waitForEnd(), 0);
        QCOMPARE(probe.lines().filter(QRegularExpression("^run")), QStringList{"runSuccessed"});
    }

    void anotherWine() {
        const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        const QString bin = data + "/lumora-wine-bottles/runners/lumora-wine-staging/bin";
        QVERIFY(QDir().mkpath(bin));
        for (const char* tool : {"wine", "wineserver"})
            QVERIFY(QFile::link(QStandardPaths::findExecutable(tool), bin + '/' + tool) ||
                    QString(tool) != "wine");
        LaunchProbe probe({"--staging", program("quit", "quits-again")});
        QCOMPARE(probe.waitForEnd(180000), 1);
        QVERIFY(QDir(bin + "/..").removeRecursively());
        verifyOrder(
            probe.lines(),
            {"msg 1 Application is not running as expected, try to using lumora-wine-staging and relaunch",
             "runFailed 1 0", "Fixing", "msg 2 App run failed, try to using lumora-wine-staging and relaunch",
             "step 1 Fixing", "msg 1 Switch runner success, relaunch program...", "step 1 Launching",
             QString(NoWindow).arg(0), NothingFixed, "runFailed 0 0"});
        QVERIFY(callBottles("get", {bottleOf("quits-again")}).contains("\"Runner\":\"lumora-wine-staging\""));
    }

    /// Whatever dies at whatever moment, the launch ends, and once.
    void killed_data() {
        const Table<QString> row("victim");
        row("service", "lumora-wine-launcher");
        row("launcher", "launcher.py");
        row("monitor", "enum_process_window.exe");
        row("wineserver", "wineserver");
    }
    void killed() {
        QFETCH(QString, victim);
        const int rounds = qMax(1, qEnvironmentVariableIntValue("CELLARIX_FAULT_ROUNDS"));
        auto* random = QRandomGenerator::global();
        callBottles("createBottles", {"warm", ""});  // so that each round has the whole launch before it
        for (int round = 0; round < rounds; ++round) {
            const QString name = QString("killed%1-%2").arg(victim.size()).arg(round);
            LaunchProbe probe({"--auto-fix", program("needs_sqlite3", name)});
            const int moment = random->bounded(200, 9000);
            waitUntil([&] { return !probe.isRunning(); }, moment);
            const int killed = killAll(victim);
            QElapsedTimer clock;
            clock.start();
            while (probe.isRunning() && clock.elapsed() < 150000) {
                const auto window = m_windows.byTitle("Cellarix sample window");
                if (window.id != 0 && probe.lines().contains("windowPopuped"))
                    m_windows.close(window.id);
                waitUntil([&] { return !probe.isRunning(); }, 500);
            }
            const int status = probe.waitForEnd(1000);
            const QStringList ends =
                probe.lines().filter(QRegularExpression("^runSuccessed|^runFailed 0|^stopped"));
            qInfo() << victim << "at" << moment << "ms," << killed << "killed, ended after" << clock.elapsed()
                    << "ms with" << status << ends;
            // 4: what Wine's death takes along was ended by a signal.
            const bool isKilled = killed > 0 && (status == 1 || (status == 4 && victim == "wineserver"));
            QVERIFY2((status == 0 || isKilled) && ends.size() == 1, qPrintable(probe.lines().join('\n')));
            callBottles("killWineServer", {bottleOf(name)});
        }
    }

    void stopped() {
        LaunchProbe probe({"--stop-after", "6000", program("window", "stopped")});
        const int status = probe.waitForEnd(180000);
        QVERIFY2(status == 4, qPrintable(probe.lines().join('\n')));
        const QString bottle = bottleOf("stopped");
        QVERIFY(!bottle.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(processesIn(bottle), 0, 2000);
    }
};

QTEST_GUILESS_MAIN(RepairTest)
#include "RepairTest.moc"
