#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QJsonObject>
#include <QStandardPaths>
#include <QUuid>
#include <QtTest>
#include <algorithm>
#include <memory>

#include "core/base/Paths.h"
#include "e2e/InstalledApp.h"
#include "support/AccessibleTree.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 120000;
const char SampleTitle[] = "Cellarix sample window";

}  // namespace

/// The library shows which programs run, whoever started them. With everything real.
class RunsTest : public QObject {
    Q_OBJECT

    const QStringList m_variables{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"};
    WindowFinder m_windows;
    std::unique_ptr<InstalledApp> m_app;
    std::unique_ptr<AccessibleTree> m_tree;

    void openLibrary() {
        m_app = std::make_unique<InstalledApp>(QStringList(), m_variables);
        QVERIFY2(m_windows.waitForTitle("Cellarix", LongMs).id, qPrintable(m_app->log()));
        if (!m_tree)
            m_tree = std::make_unique<AccessibleTree>();
        const auto isLoaded = [this] {
            const QStringList names = m_tree->names();
            return names.contains("Programs") || names.contains("Run a Windows program");
        };
        QTRY_VERIFY_WITH_TIMEOUT(isLoaded(), LongMs);
    }
    void closeLibrary() {
        QVERIFY(m_windows.close(m_windows.byPid(m_app->pid()).last().id));
        QCOMPARE(m_app->waitForExit(), 0);
    }
    bool isShownRunning() const { return m_tree->descriptions().contains("Running"); }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the makers of Windows programs are not on this machine");
        InstalledApp::acceptAgreement();
    }

    void startedElsewhere() {
        openLibrary();

        // By the command line: the file becomes a program of the library while it runs.
        InstalledApp starter({sample("window")});
        QCOMPARE(starter.waitForExit(), 1);  // handed over
        WindowInfo window = m_windows.waitForTitle(SampleTitle, LongMs);
        QVERIFY2(window.id, qPrintable(m_app->log()));
        QTRY_VERIFY2_WITH_TIMEOUT(isShownRunning(), qPrintable(m_app->log()), LongMs);
        const QString bottle = bottleNames().value(0);
        const auto icon = [&bottle] {
            const QJsonObject programs =
                bottlesJson("get", {bottle}).object()["External_Programs"].toObject();
            return programs.isEmpty() ? QString() : programs.begin()->toObject()["icon"].toString();
        };
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(icon()).isFile(), LongMs);
        QVERIFY(m_tree->press("appitem_running_state"));
        QVERIFY2(m_windows.waitUntilGone(window.id, LongMs), qPrintable(m_app->log()));
        QTRY_VERIFY_WITH_TIMEOUT(!isShownRunning(), LongMs);

        // By the launch script alone; also seen by a library that is opened later.
        ChildProcess script;
        script.start(Paths::launcherScript(), {bottle, sample("window")});
        window = m_windows.waitForTitle(SampleTitle, LongMs);
        QVERIFY(window.id);
        QTRY_VERIFY2_WITH_TIMEOUT(isShownRunning(), qPrintable(m_app->log()), LongMs);
        closeLibrary();
        openLibrary();
        QTRY_VERIFY2_WITH_TIMEOUT(isShownRunning(), qPrintable(m_app->log()), LongMs);

        // Return on the tile brings its window up.
        QProcess::execute("xdotool", {"key", "--delay", "200", "Down", "Return"});
        QTRY_COMPARE_WITH_TIMEOUT(m_windows.windows().last().id, window.id, LongMs);

        // A service that is started later knows it, too.
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            "com.lumora.LumoraWineLauncher", "/com/lumora/Manager", "com.lumora.Manager", "Quit"));
        QVERIFY(m_tree->press("appitem_running_state"));
        QVERIFY2(m_windows.waitUntilGone(window.id, LongMs), qPrintable(m_app->log()));
        QTRY_VERIFY_WITH_TIMEOUT(!isShownRunning(), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(script.state(), QProcess::NotRunning, LongMs);
        callBottles("delete", {bottle});
        closeLibrary();
    }

    void failedStart() {
        const QString file = sampleAs("fault", QDir::homePath() + "/programs", "changing.exe");
        const QString record = QString(R"({"id":"%1","name":"Changing","path":"%2"})")
                                   .arg(QUuid::createUuid().toString(QUuid::WithoutBraces), file);
        callBottles("createBottles", {"changing", ""});
        callBottles("updateExternalProgram", {"changing", record});
        openLibrary();
        const QString reason = "It ended at once without showing a window (exit code 2).";
        const auto isMarked = [&] {
            const QStringList told = m_tree->descriptions();
            return std::any_of(told.begin(), told.end(),
                               [&](const QString& text) { return text.startsWith(reason); });
        };
        QProcess::execute("xdotool", {"key", "--delay", "200", "Down", "Return"});
        QTRY_VERIFY2_WITH_TIMEOUT(isMarked(), qPrintable(m_app->log()), LongMs);
        closeLibrary();
        openLibrary();
        QTRY_VERIFY_WITH_TIMEOUT(isMarked(), LongMs);

        // The file is replaced by a good one. Repair shows the banner, and the good start removes the mark.
        QVERIFY(!sampleAs("window", QDir::homePath() + "/programs", "changing.exe").isEmpty());
        QProcess::execute("xdotool", {"key", "Down"});
        QVERIFY(m_tree->press("appitem_running_state"));
        QVERIFY2(m_app->waitForLog("show banner"), qPrintable(m_app->log()));
        const WindowInfo window = m_windows.waitForTitle(SampleTitle, LongMs);
        QVERIFY2(window.id, qPrintable(m_app->log()));
        QVERIFY2(m_app->waitForLog("got a window popuped", LongMs), qPrintable(m_app->log()));
        QTRY_VERIFY_WITH_TIMEOUT(isShownRunning(), LongMs);
        QVERIFY(m_tree->press("appitem_running_state"));
        QVERIFY2(m_windows.waitUntilGone(window.id, LongMs), qPrintable(m_app->log()));
        QVERIFY2(m_app->waitForLog("remove exe runner", LongMs), qPrintable(m_app->log().right(1500)));
        QTRY_VERIFY_WITH_TIMEOUT(!isShownRunning() && !isMarked(), LongMs);
        closeLibrary();
    }
};

QTEST_GUILESS_MAIN(RunsTest)
#include "RunsTest.moc"
