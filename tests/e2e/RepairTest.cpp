#include <unistd.h>
#include <csignal>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QJsonArray>
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

constexpr int LaunchMs = 180000;
const char SampleTitle[] = "Cellarix sample window";

/// Kills the processes of this session whose command line contains the word; returns how many.
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

}  // namespace

/// Whole launches on real Wine: programs that lack something and get it, and launches in which a process is
/// killed.
class RepairTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QTemporaryDir m_dir;

    QString program(const QString& name, const QString& as) {
        return sampleAs(name, m_dir.path() + "/programs", as + ".exe");
    }
    static QVariant callOffline(const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage call = QDBusMessage::createMethodCall("com.lumora.LumoraWineLauncher",
                                                           "/com/lumora/Manager/OfflineDependency",
                                                           "com.lumora.Manager.OfflineDependency", method);
        call.setArguments(arguments);
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
        if (!reply.errorMessage().isEmpty())
            qWarning().noquote() << method << reply.errorMessage();
        return reply.arguments().value(0);
    }
    /// The wanted lines must come in this order, among others.
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
        QVERIFY(offerSampleLibraries());
    }
    void cleanup() { killAllWineServers(); }

    /// The first repair uncovers a second missing library.
    void repairedTwice() {
        LaunchProbe probe({"--auto-fix", program("needs_vcamp140", "needs_vcamp140")});
        QVERIFY(probe.waitFor("windowPopuped", LaunchMs));
        QVERIFY(m_windows.close(m_windows.waitForTitle(SampleTitle).id));
        QCOMPARE(probe.waitForEnd(), 0);
        verifyOrder(probe.lines(),
                    {"step 1 Initializing Envrironment", "msg 1 Choose wine version: lumora-wine10-stable",
                     "msg 2 Launching needs_vcamp140.exe", "msg 1 Parsed wine error logs:",
                     "msg 1 Try to install components:", "msg 1 vcredist2022",
                     "msg 1 Seems application has finished, exit code: 53, and app not been launched",
                     "runFailed 1 0", "Fixing", "msg 2 Fix: install components vcredist2022",
                     "msg 2 Setup Success", "step 1 Launching", "msg 1 sqlite3", "Fixing",
                     "msg 2 Fix: install components sqlite3", "msg 2 Setup Success", "windowPopuped",
                     "msg 1 Seems application has finished, exit code: 0", "runSuccessed"});
        const QJsonObject record = bottlesJson("get", {bottleOf("needs_vcamp140")}).object();
        QCOMPARE(record["Installed_Dependencies"].toArray(), (QJsonArray{"vcredist2022", "sqlite3"}));
    }

    /// A component goes from one machine to another in a file: when nothing else has its files any more, the
    /// program that needs it runs.
    void componentFromAFile() {
        const QString data =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumora-wine-bottles";
        const QString file = m_dir.path() + "/exported.tar";
        callOffline("exportDeps", {QStringList("sqlite3"), file});
        QTRY_COMPARE_WITH_TIMEOUT(callOffline("isExporting").toBool(), false, LaunchMs);
        QVERIFY(QDir(data + "/mirror").removeRecursively() && QDir(data + "/downloads").removeRecursively());
        callBottles("createBottles", {"offline", ""});
        callOffline("importDeps", {"offline", QStringList(file)});
        QTRY_COMPARE_WITH_TIMEOUT(callOffline("isImporting").toBool(), false, LaunchMs);
        QCOMPARE(callOffline("importingStatus").toString(), QString(R"({"sqlite3":{"status":"ok"}})"));
        callBottles("run_command", {"offline", program("needs_sqlite3", "offline")});
        QVERIFY(m_windows.close(m_windows.waitForTitle(SampleTitle).id));
        QVERIFY(offerSampleLibraries());
    }

    /// Wine says what it misses only when it is asked to.
    void missingFont() {
        LaunchProbe probe({program("fault", "fault-window-font")});
        QCOMPARE(probe.waitForEnd(LaunchMs), 2);
        verifyOrder(probe.lines(), {"windowPopuped", "msg 1 This application missing fonts: simsun.ttc",
                                    "msg 1 Seems application has finished, exit code: 0", "runFailed 1 1"});
    }

    /// Whichever process dies at whatever moment, the launch ends, and once.
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
                const auto window = m_windows.byTitle(SampleTitle);
                if (window.id != 0 && probe.lines().contains("windowPopuped"))
                    m_windows.close(window.id);
                waitUntil([&] { return !probe.isRunning(); }, 500);
            }
            const int status = probe.waitForEnd(1000);
            const QStringList ends =
                probe.lines().filter(QRegularExpression("^runSuccessed|^runFailed 0|^stopped"));
            qInfo() << victim << "at" << moment << "ms," << killed << "killed, ended after" << clock.elapsed()
                    << "ms with" << status << ends;
            // 4: a program that dies with its wineserver was ended by a signal.
            const bool isKilled = killed > 0 && (status == 1 || (status == 4 && victim == "wineserver"));
            QVERIFY2((status == 0 || isKilled) && ends.size() == 1, qPrintable(probe.lines().join('\n')));
            callBottles("killWineServer", {bottleOf(name)});
        }
    }
};

QTEST_GUILESS_MAIN(RepairTest)
#include "RepairTest.moc"
