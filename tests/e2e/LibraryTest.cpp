#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "support/AccessibleTree.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LaunchMs = 120000;
const char Uuid[] = "22222222-3333-4444-5555-666666666666";
const char SampleTitle[] = "Cellarix sample window";

void pressKey(const QString& key) {
    QProcess::execute("xdotool", {"key", key});
}

}  // namespace

/// The library with everything real: a program of a bottle started and stopped in it.
class LibraryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startAndStop() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        InstalledApp::acceptAgreement();
        callBottles("createBottles", {"library", ""});
        const QJsonObject program{{"id", Uuid}, {"name", "Sample"}, {"path", sample("window")}};
        callBottles("updateExternalProgram",
                    {"library", QString::fromUtf8(QJsonDocument(program).toJson(QJsonDocument::Compact))});

        InstalledApp app({}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
        const WindowFinder windows;
        const WindowInfo library = windows.waitForTitle("Cellarix", LaunchMs);
        QVERIFY2(library.id, qPrintable(app.log()));
        const AccessibleTree tree;
        QTRY_VERIFY_WITH_TIMEOUT(tree.names().contains("Sample"), LaunchMs);
        pressKey("Down");  // from the search to the first tile, which then has its buttons
        QVERIFY2(tree.press("appitem_running_state"), qPrintable(app.log()));
        const WindowInfo window = windows.waitForTitle(SampleTitle, LaunchMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        QCOMPARE(environmentOf(window.pid).value("_CXB_WINE_PROGRAM_UUID"), QString(Uuid));
        QVERIFY2(app.waitForLog(QString("program %1 popuped window").arg(Uuid)), qPrintable(app.log()));

        QVERIFY(tree.press("appitem_running_state"));
        QVERIFY(windows.waitUntilGone(window.id, LaunchMs));
        QVERIFY2(app.waitForLog(QString("program exited:  ") + Uuid), qPrintable(app.log()));
        QVERIFY(windows.close(library.id));
        QCOMPARE(app.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(LibraryTest)
#include "LibraryTest.moc"
