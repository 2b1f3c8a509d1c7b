#include <QDir>
#include <QDirIterator>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "support/AccessibleTree.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 120000;
const char SampleTitle[] = "Cellarix sample window";

QByteArray xdotool(const QStringList& arguments) {
    QProcess tool;
    tool.start("xdotool", arguments);
    tool.waitForFinished();
    return tool.readAllStandardOutput();
}

/// Opens the menu of the only program and presses keys in it. The accessibility tree does not hold menus.
bool chooseOption(const InstalledApp& app, const AccessibleTree& tree, const QStringList& keys) {
    const auto windows = [&app] {
        return xdotool({"search", "--onlyvisible", "--pid", QString::number(app.pid()), ""}).count('\n');
    };
    const int before = windows();
    if (!tree.press("Options") || !waitUntil([&] { return windows() > before; }, LongMs))
        return false;
    xdotool(QStringList{"key"} + keys + QStringList{"Return"});
    return true;
}

/// All bottles, and all files that programs have put where the desktop reads them.
QStringList traces() {
    const QString data = QDir::homePath() + "/.local/share";
    QStringList found =
        QDir(data + "/lumora-wine-bottles/bottles").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& place :
         {QDir::homePath() + "/Desktop", QDir::homePath() + "/.config/autostart", data + "/applications",
          data + "/mime/packages", data + "/desktop-directories"}) {
        QDirIterator files(place, QDir::Files);
        while (files.hasNext())
            found << files.next();
    }
    return found.filter(QRegularExpression("^(?!.*mimeinfo.cache$)"));
}

}  // namespace

/// With everything real, a new user installs a program, runs, renames and removes it.
class LibraryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newcomer() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("setup_links").isEmpty())
            QSKIP("Wine or the makers of Windows programs are not on this machine");
        InstalledApp::acceptAgreement();
        QVERIFY(QDir::home().mkpath("Desktop"));
        InstalledApp app({}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
        WindowFinder windows;
        const WindowInfo library = windows.waitForTitle("Cellarix", LongMs);
        QVERIFY2(library.id, qPrintable(app.log()));
        const AccessibleTree tree;
        const auto shows = [&tree](const QString& name) { return tree.names().contains(name); };
        QTRY_VERIFY_WITH_TIMEOUT(shows("Run a Windows program"), LongMs);

        InstalledApp setup({sample("setup_links")});
        QCOMPARE(setup.waitForExit(), 1);  // handed over
        QTRY_VERIFY2_WITH_TIMEOUT(shows("Sample program"), qPrintable(app.log()), LongMs);
        // The set-up's own entry is removed last; a button pressed before that would be the wrong one.
        QVERIFY2(app.waitForLog("slotRemoveApp: ", LongMs), qPrintable(app.log()));

        xdotool({"key", "Down"});  // from the search to the first tile, which then has its buttons
        QVERIFY2(tree.press("appitem_running_state"), qPrintable(app.log()));
        const WindowInfo window = windows.waitForTitle(SampleTitle, LongMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        const QString uuid = environmentOf(window.pid).value("_CXB_WINE_PROGRAM_UUID");
        QVERIFY2(app.waitForLog(QString("program %1 popuped window").arg(uuid)), qPrintable(app.log()));
        // A press right after the first would count as a double click.
        const auto quits = [&] {
            return tree.press("appitem_running_state") && app.waitForLog("stop program", 1000);
        };
        QVERIFY2(waitUntil(quits, LongMs), qPrintable(app.log()));
        QVERIFY2(windows.waitUntilGone(window.id, LongMs), qPrintable(app.log()));
        QVERIFY2(app.waitForLog("program exited:  " + uuid), qPrintable(app.log()));

        QVERIFY(chooseOption(app, tree, {"Down"}));
        QVERIFY(tree.press("Edit application name"));
        xdotool({"type", "My notes"});
        xdotool({"key", "Return"});
        QVERIFY2(app.waitForLog("update app info in cfg"), qPrintable(app.log()));
        xdotool({"key", "Escape"});
        QTRY_VERIFY2_WITH_TIMEOUT(!shows("Edit Details") && shows("My notes"), qPrintable(app.log()), LongMs);

        QVERIFY(chooseOption(app, tree, {"Up", "Up", "Up"}));
        QTRY_COMPARE_WITH_TIMEOUT(traces().filter(".desktop").size(), 2, LongMs);
        QVERIFY(chooseOption(app, tree, {"Up"}));
        QVERIFY(tree.press("Confirm Uninstall"));
        QTRY_VERIFY2_WITH_TIMEOUT(shows("Run a Windows program"), qPrintable(app.log()), LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(traces(), QStringList(), LongMs);
        QVERIFY(windows.close(library.id));
        QCOMPARE(app.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(LibraryTest)
#include "LibraryTest.moc"
