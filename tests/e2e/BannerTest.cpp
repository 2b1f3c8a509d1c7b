#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "support/AccessibleTree.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LaunchMs = 120000;
const char SampleTitle[] = "Cellarix sample window";

}  // namespace

/// What a user sees and does in the banner, on real Wine: the installed application, whose buttons are
/// pressed over the accessibility bus.
class BannerTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QTemporaryDir m_dir;

    QString program(const QString& name, const QString& as = {}) {
        return sampleAs(name, m_dir.path(), (as.isEmpty() ? name : as) + ".exe");
    }
    static QStringList variables() { return {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"}; }

    bool closeProgram(InstalledApp& app) {
        if (!app.waitForLog("got a window popuped", LaunchMs))
            return false;
        const WindowInfo window = m_windows.waitForTitle(SampleTitle, LaunchMs);
        return window.id != 0 && m_windows.close(window.id);
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("needs_sqlite3").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        InstalledApp::acceptAgreement();
        QVERIFY(offerSampleLibraries());
    }
    void cleanup() { killAllWineServers(); }

    /// A repair ends other programs of the bottle only when the user agrees.
    void otherProgramsRun() {
        InstalledApp app({program("needs_sqlite3", "beside")}, variables());
        QVERIFY2(app.waitForLog("show failed", LaunchMs), qPrintable(app.log()));
        const QString other = "Z:" + program("window", "other").replace('/', '\\');
        callBottles("run_command", {bottleOf("beside"), '"' + other + '"'});
        const auto first = m_windows.waitForTitle(SampleTitle, LaunchMs);
        QVERIFY(first.id != 0);
        QVERIFY(AccessibleTree().press("repair_btn"));
        QVERIFY2(app.waitForLog("programs run in", LaunchMs), qPrintable(app.log()));
        QVERIFY(AccessibleTree().press("cancel_btn"));
        QVERIFY(AccessibleTree().press("repair_btn"));
        QCOMPARE(m_windows.waitForTitle(SampleTitle, LaunchMs).id, first.id);
        QVERIFY(AccessibleTree().press("close_programs_btn"));
        QVERIFY2(closeProgram(app), qPrintable(app.log()));
        QCOMPARE(app.waitForExit(), 0);
    }

    /// A stored program fails, and --fixup offers the component that its log asks for.
    void fixup() {
        {
            InstalledApp app({program("needs_sqlite3", "later")});
            QVERIFY2(app.waitForLog("show failed", LaunchMs), qPrintable(app.log()));
            QVERIFY(m_windows.close(m_windows.waitForTitle("later.exe").id));
            QCOMPARE(app.waitForExit(), 0);
        }
        const QString bottle = bottleOf("later");
        const QJsonObject record = bottlesJson("get", {bottle}).object();
        const QString uuid = record["External_Programs"].toObject().keys().value(0);
        QVERIFY(!uuid.isEmpty());
        InstalledApp app({"--fixup", bottle, uuid, "sqlite3"}, variables());
        QVERIFY(AccessibleTree().press("repair_btn"));
        QVERIFY2(closeProgram(app), qPrintable(app.log()));
        QCOMPARE(app.waitForExit(), 0);
    }

    /// The user is asked first; then every process of the bottle is ended.
    void closedDuringStart() {
        InstalledApp app({program("fault", "fault-wait")}, variables());
        const WindowInfo banner = m_windows.waitForTitle("fault-wait.exe");
        const auto living = [] {
            const QString end = '/' + bottleOf("fault-wait");
            for (const QString& pid : QDir("/proc").entryList(QDir::Dirs)) {
                if (pid.toLongLong() > 0 && end.size() > 1 &&
                    environmentOf(pid.toLongLong()).value("WINEPREFIX").endsWith(end))
                    return true;
            }
            return false;
        };
        QTRY_VERIFY2_WITH_TIMEOUT(living(), qPrintable(app.log()), LaunchMs);
        for (const char* button : {"keep_waiting_btn", "close_btn"}) {
            QVERIFY(app.isRunning());
            QVERIFY(m_windows.close(banner.id));
            const WindowInfo question = m_windows.waitForTitle("Close Running");
            QVERIFY2(AccessibleTree().press(button), qPrintable(app.log()));
            QVERIFY(m_windows.waitUntilGone(question.id));
        }
        QCOMPARE(app.waitForExit(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!living(), 20000);
    }
};

QTEST_GUILESS_MAIN(BannerTest)
#include "BannerTest.moc"
