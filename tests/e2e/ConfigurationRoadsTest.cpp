#include <QDir>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "support/AccessibleTree.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 120000;
const char WindowTitle[] = "Configuration of ";

}  // namespace

/// The roads to the configuration window, by the installed application and on real Wine: with everything that
/// opens it, it shows the program that it was opened for, and the process ends with it.
class ConfigurationRoadsTest : public QObject {
    Q_OBJECT

    WindowFinder m_windows;
    QTemporaryDir m_dir;
    const QStringList m_variables{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"};

    QString program(const QString& name, const QString& as) const {
        return sampleAs(name, m_dir.path(), as + ".exe");
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        InstalledApp::acceptAgreement();
    }
    void cleanup() { killAllWineServers(); }

    /// A bottle is made for a file that has none, and the window goes with it.
    void switchOfTheCommandLine() {
        InstalledApp app({"--debug", program("window", "debugged")}, m_variables);
        const WindowInfo window = m_windows.waitForTitle(WindowTitle, LongMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        const QString bottle = bottleOf("debugged");
        QVERIFY2(AccessibleTree().press("Debugging Runs", LongMs), qPrintable(app.log()));
        QVERIFY2(m_windows.waitForTitle("Cellarix sample window", LongMs).id, qPrintable(app.log()));
        callBottles("delete", {bottle});
        QVERIFY(m_windows.waitUntilGone(window.id, LongMs));
        QCOMPARE(app.waitForExit(), 0);
    }

    void buttonOfTheBanner() {
        InstalledApp app({program("needs_sqlite3", "failing")}, m_variables);
        QVERIFY2(app.waitForLog("show failed", LongMs), qPrintable(app.log()));
        QVERIFY2(AccessibleTree().press("repair_debug_btn") || AccessibleTree().press("debug_btn"),
                 qPrintable(app.log()));
        const WindowInfo window = m_windows.waitForTitle(WindowTitle + QString("failing"), LongMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        QTRY_VERIFY_WITH_TIMEOUT(AccessibleTree().names().contains("Debug Log"), LongMs);
        QVERIFY(m_windows.close(window.id));
        QCOMPARE(app.waitForExit(), 0);
        callBottles("delete", {bottleOf("failing")});
    }

    void menuOfTheLibrary() {
        QVERIFY(bottlesJson("createBottles", {"shelf", ""})["ok"].toBool());
        addProgram("shelf", "11111111-0000-4000-8000-000000000000", "Shelf", program("window", "shelf"));
        InstalledApp app({}, m_variables);
        const WindowInfo library = m_windows.waitForTitle("Cellarix", LongMs);
        const AccessibleTree tree;
        QTRY_VERIFY_WITH_TIMEOUT(tree.names().contains("Shelf"), LongMs);
        const auto keys = [](const QStringList& names) {
            QProcess::execute("xdotool", QStringList{"key", "--delay", "200"} + names);
        };
        keys({"Down", "F10", "Down", "Down", "Return"});
        const WindowInfo window = m_windows.waitForTitle(WindowTitle + QString("Shelf"), LongMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        keys({"Escape"});
        QVERIFY(m_windows.waitUntilGone(window.id));
        QVERIFY(m_windows.close(library.id));
        QCOMPARE(app.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(ConfigurationRoadsTest)
#include "ConfigurationRoadsTest.moc"
