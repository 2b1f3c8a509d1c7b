#include <QClipboard>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QtTest>
#include <csignal>

#include "e2e/InstalledApp.h"
#include "support/AccessibleTree.h"
#include "support/ChildProcess.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"
#include "support/ZipFile.h"

using namespace TestSupport;

namespace {
constexpr int LongMs = 120000;
}

/// With everything real, an archive with a portable program is pasted into the library.
class PortableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pasted() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the makers of Windows programs are not on this machine");
        const QByteArray program = readFile(sample("window"));
        QTemporaryDir downloads;
        QFile archive(downloads.filePath("Harbour 2.1.zip"));
        QVERIFY(archive.open(QIODevice::WriteOnly));
        archive.write(zipOf({{"Harbour/HarbourUpdate.exe", program},
                             {"Harbour/unins000.exe", program},
                             {"Harbour/Harbour.exe", program},
                             {"Harbour/data/readme.txt", "x"}}));
        archive.close();
        InstalledApp::acceptAgreement();
        InstalledApp app({}, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"});
        WindowFinder windows;
        QVERIFY2(windows.waitForTitle("Cellarix", LongMs).id, qPrintable(app.log()));
        const AccessibleTree tree;
        QTRY_VERIFY_WITH_TIMEOUT(tree.names().contains("Run a Windows program"), LongMs);

        ChildProcess clipboard;
        clipboard.start(QCoreApplication::applicationFilePath(), {"--clipboard", archive.fileName()});
        QCOMPARE(clipboard.readLineWithin(), QString("ready"));
        QVERIFY(runProcess("xdotool", {"key", "ctrl+v"}).ok());
        QTRY_VERIFY2_WITH_TIMEOUT(tree.names().contains("The file is valid"), qPrintable(app.log()), LongMs);
        QVERIFY(tree.press("add_apps_run"));
        QTRY_VERIFY2_WITH_TIMEOUT(tree.names().contains("Add and Run"), qPrintable(app.log()), LongMs);
        QVERIFY(tree.press("Add and Run"));
        const WindowInfo window = windows.waitForTitle("Cellarix sample window", LongMs);
        QVERIFY2(window.id, qPrintable(app.log()));
        QTRY_COMPARE(bottlesJson("listAllPrograms").array().size(), 1);
        QCOMPARE(bottlesJson("listAllPrograms").array()[0].toObject()["path"].toString(),
                 QString("C:\\Program Files\\Harbour 2.1\\Harbour\\Harbour.exe"));
        QCOMPARE(bottleNames(), QStringList("portable-Harbour2.1"));
        QTRY_VERIFY(
            tree.names().contains(bottlesJson("listAllPrograms").array()[0].toObject()["name"].toString()));
        QVERIFY2(app.waitForLog("got a window popuped", LongMs), qPrintable(app.log().right(3000)));
        QVERIFY(windows.close(window.id));
        QVERIFY2(app.waitForLog("program exited:", LongMs), qPrintable(app.log().right(3000)));
        app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 0);
        killAllWineServers();
    }
};

/// A clipboard needs a process that serves it at any time, which a test that waits for answers cannot.
int main(int argc, char** argv) {
    if (argc == 3 && qstrcmp(argv[1], "--clipboard") == 0) {
        const QGuiApplication owner(argc, argv);
        QGuiApplication::clipboard()->setText(QString::fromLocal8Bit(argv[2]));
        puts("ready");
        fflush(stdout);
        return QGuiApplication::exec();
    }
    QCoreApplication app(argc, argv);
    PortableTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "PortableTest.moc"
