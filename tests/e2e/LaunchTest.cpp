#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>
#include <csignal>

#include "e2e/InstalledApp.h"
#include "support/Table.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int FirstLaunchMs = 120000;  // makes a bottle
constexpr int LaunchMs = 60000;
const char SampleTitle[] = "Cellarix sample window";

QJsonObject bottle(const QString& name) {
    return bottlesJson("get", {name}).object();
}

}  // namespace

/// What happens to a double-clicked file with everything real: the installed program, the bottle service,
/// Wine, an X server with a window manager.
class LaunchTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_files;
    WindowFinder m_windows;
    QString m_bottle;

    int sampleWindows() const {
        const QVector<WindowInfo> windows = m_windows.windows();
        return int(std::count_if(windows.begin(), windows.end(),
                                 [](const WindowInfo& window) { return window.title == SampleTitle; }));
    }

    /// A window that is closed before the launch has seen it counts as a program that failed.
    static bool isSeen(const InstalledApp& app, int windows = 1) {
        return waitUntil([&] { return app.log().count("got a window popuped") >= windows; }, LaunchMs);
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("Wine is not on this machine");
        if (sample("window").isEmpty())
            QSKIP("the Windows samples were not built, a mingw-w64 compiler is missing");
        QVERIFY2(m_windows.hasWindowManager(), "run this test in scripts/session");
        InstalledApp::acceptAgreement();
    }

    void cleanup() { QVERIFY(m_windows.closeAll(LaunchMs)); }

    void fileEndsInItsWindow() {
        const QString file = sampleAs("window", m_files.path(), "first.exe");
        InstalledApp app({file});
        const WindowInfo window = m_windows.waitForTitle(SampleTitle, FirstLaunchMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        m_bottle = environmentOf(window.pid).value("WINEPREFIX").section('/', -1);
        QVERIFY2(m_bottle.startsWith("first.exe"), qPrintable(m_bottle));
        QCOMPARE(m_bottle.size(), int(strlen("first.exe")) + 32);
        QCOMPARE(environmentOf(window.pid).value("ATTACH_FILE_DIALOG"), QString("1"));
        QVERIFY(isSeen(app));
        QTRY_VERIFY(m_windows.byPid(app.pid()).isEmpty());  // the banner has gone
        m_windows.close(window.id);
        QCOMPARE(app.waitForExit(), 0);
        QVERIFY2(app.log().contains("all runners are finished, quit app"), qPrintable(app.log()));
        const QJsonObject programs = bottle(m_bottle).value("External_Programs").toObject();
        QCOMPARE(programs.size(), 1);
        QCOMPARE(programs.begin().value().toObject().value("path").toString(), file);
    }

    void storedProgramByUrl() {
        QVERIFY(!m_bottle.isEmpty());
        const QString uuid = bottle(m_bottle).value("External_Programs").toObject().keys().value(0);
        InstalledApp app({"lumorawine://" + m_bottle + "/" + uuid});
        const WindowInfo window = m_windows.waitForTitle(SampleTitle, LaunchMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        QCOMPARE(environmentOf(window.pid).value("_CXB_WINE_PROGRAM_UUID"), uuid);
        QVERIFY(isSeen(app));
        m_windows.close(window.id);
        QCOMPARE(app.waitForExit(), 0);
        QVERIFY(
            QFile::exists(bottle(m_bottle).value("Path").toString() + "/logs/wine-program-" + uuid + ".txt"));
    }

    void consoleOutputReachesTheLog() {
        InstalledApp app({sampleAs("console", m_files.path(), "console.exe")});
        QCOMPARE(app.waitForExit(FirstLaunchMs), 0);
        const QString path = bottle(bottleOf("console.exe")).value("Path").toString();
        const QByteArray log = readFile(path + "/logs/wine-console.exe.txt");
        QVERIFY2(log.contains("你好，世界"), log.right(2000).constData());
    }

    void awkwardNames_data() {
        const Table<QString> row("name");
        row("quotes, blanks, Chinese, a dash ahead", "-x 中文 'c' `d` $e（一）.exe");
        row("255 bytes", QString(251, 'n') + ".exe");
    }
    void awkwardNames() {
        QFETCH(QString, name);
        InstalledApp app({sampleAs("quit", m_files.path(), name)});
        QVERIFY2(app.waitForLog("show failed", FirstLaunchMs), qPrintable(app.log()));
        QVERIFY2(app.log().contains("exe finished:  0"), qPrintable(app.log()));
        QVERIFY(m_windows.closeAll(LaunchMs));
        QCOMPARE(app.waitForExit(), 0);
    }

    /// The second program has 32 bits where this Wine runs those.
    void secondStartHandsOver() {
        const int bits = sample("window", 32).isEmpty() ? 64 : 32;
        InstalledApp app({m_files.path() + "/first.exe"});
        QVERIFY2(m_windows.waitForTitle(SampleTitle, LaunchMs).id, qPrintable(app.log()));
        InstalledApp other({sampleAs("window", m_files.path(), "second.exe", bits)});
        QCOMPARE(other.waitForExit(), 1);
        QVERIFY2(other.log().contains("another instance is running"), qPrintable(other.log()));
        QTRY_COMPARE_WITH_TIMEOUT(sampleWindows(), 2, FirstLaunchMs);
        QVERIFY(isSeen(app, 2));

        QVERIFY(m_windows.closeAll(LaunchMs));
        QCOMPARE(app.waitForExit(), 0);
    }

    void programOutlivesTheMainWindow() {
        InstalledApp app;
        const WindowInfo mainWindow = m_windows.waitForTitle("Cellarix", LaunchMs);
        QVERIFY2(mainWindow.id, qPrintable(app.log()));
        InstalledApp other({m_files.path() + "/first.exe"});
        QCOMPARE(other.waitForExit(), 1);
        const WindowInfo program = m_windows.waitForTitle(SampleTitle, LaunchMs);
        QVERIFY2(program.id, qPrintable(app.log()));
        QVERIFY(isSeen(app));
        m_windows.close(mainWindow.id);
        QVERIFY(app.waitForLog("bottles is running"));
        QVERIFY(app.isRunning());
        m_windows.close(program.id);
        QCOMPARE(app.waitForExit(), 0);
    }

    void signalEndsIt_data() {
        const Table<int> row("number");
        row("SIGTERM", SIGTERM);
        row("SIGINT", SIGINT);
        row("SIGHUP", SIGHUP);
        row("SIGQUIT", SIGQUIT);
    }
    void signalEndsIt() {
        QFETCH(int, number);
        InstalledApp app;
        QVERIFY(m_windows.waitForTitle("Cellarix", LaunchMs).id);
        app.signal(number);
        QCOMPARE(app.waitForExit(), 0);
        // Work in the background may write the last line.
        const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
        const QString log = QString::fromUtf8(readFile(cache + "/lumora/cellarix/cellarix.log"));
        const QString lastLines = log.trimmed().section('\n', -3);
        QVERIFY2(lastLines.contains(QString("ending on signal %1").arg(number)), qPrintable(lastLines));
    }

    /// The first start fails behind the agreement, which must not end the process before the second is
    /// carried out.
    void startBehindTheAgreement() {
        QFile::remove(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                      "/lumora/cellarix/settings.conf");
        InstalledApp first({"/nowhere/a.exe"});
        const WindowInfo dialog = m_windows.waitForTitle("Welcome to use Cellarix", LaunchMs);
        QVERIFY2(dialog.id, qPrintable(first.log()));
        QCOMPARE(InstalledApp().waitForExit(), 1);
        QTRY_VERIFY(first.log().contains("::::"));
        const auto agrees = [&] {
            runProcess("xdotool", {"key", "--window", QString::number(dialog.id), "Return"}, {}, LaunchMs);
            // The dialog may go before the release, and a key that stays down answers the next one too.
            runProcess("xdotool", {"keyup", "Return"}, {}, LaunchMs);
            return first.log().contains("No such file:");
        };
        QTRY_VERIFY2(agrees(), qPrintable(first.log()));
        const WindowInfo library = m_windows.waitForTitle("Cellarix", LaunchMs);
        QVERIFY2(library.id, qPrintable(first.log()));
        QVERIFY(m_windows.close(library.id));
        QCOMPARE(first.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(LaunchTest)
#include "LaunchTest.moc"
