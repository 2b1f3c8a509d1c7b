#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "e2e/LaunchProbe.h"
#include "support/AccessibleTree.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LaunchMs = 120000;
const char SampleTitle[] = "Cellarix sample window";

QJsonArray bottleNames() {
    return QJsonDocument::fromJson(callBottles("list").toUtf8()).array();
}

QString bottleOf(const QString& program) {
    for (const QJsonValue& name : bottleNames()) {
        if (name.toString().startsWith(program))
            return name.toString();
    }
    return {};
}

QJsonObject programs(const QString& bottle) {
    return QJsonDocument::fromJson(callBottles("get", {bottle}).toUtf8())
        .object()
        .value("External_Programs")
        .toObject();
}

}  // namespace

/// What a person sees of launches and does with them, on real Wine: the installed application, its buttons
/// pressed from outside.
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
        const QString mirror =
            useMirror({{"sqlite3", R"([{"extract": "sqlite3.tar", "files": ["sqlite3.dll"]}])"}});
        QProcess tar;
        tar.start("tar",
                  {"-C", QFileInfo(sample("window")).path(), "-cf", mirror + "/sqlite3.tar", "sqlite3.dll"});
        QVERIFY(tar.waitForFinished() && tar.exitCode() == 0);
    }
    void cleanup() {
        for (const QJsonValue& bottle : bottleNames())
            callBottles("killWineServer", {bottle.toString()});
    }

    /// A repair ends what runs in the bottle only when the user has said so.
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

    /// A stored program fails, and what its log asks for is offered by way of the command line.
    void fixup() {
        {
            InstalledApp app({program("needs_sqlite3", "later")});
            QVERIFY2(app.waitForLog("show failed", LaunchMs), qPrintable(app.log()));
            QVERIFY(m_windows.close(m_windows.waitForTitle("later.exe").id));
            QCOMPARE(app.waitForExit(), 0);
        }
        const QString bottle = bottleOf("later");
        const QString uuid = programs(bottle).keys().value(0);
        QVERIFY(!uuid.isEmpty());
        InstalledApp app({"--fixup", bottle, uuid, "sqlite3"}, variables());
        QVERIFY(AccessibleTree().press("repair_btn"));
        QVERIFY2(closeProgram(app), qPrintable(app.log()));
        QCOMPARE(app.waitForExit(), 0);
    }

    /// The question comes first; then nothing of the bottle goes on.
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
