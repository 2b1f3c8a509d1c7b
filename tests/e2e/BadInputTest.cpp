#include <sys/stat.h>

#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>

#include "e2e/InstalledApp.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

/// Headers for 64 bits, and nothing to run.
QByteArray smallProgram() {
    QByteArray bytes(1024, '\0');
    bytes.replace(0, 2, "MZ").replace(60, 1, "\x40");
    bytes.replace(64, 2, "PE").replace(68, 2, "\x64\x86");
    return bytes;
}

}  // namespace

/// The installed application against nonsense: on the command line, on the bus, on the disk. Nothing may
/// hang, each start says why it ends, and no file of the user's is lost.
class BadInputTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TestHome> m_home;
    PrivateBus m_bus;
    std::unique_ptr<FakeBottleService> m_service;

    QString settingsFile() const { return m_home->config() + "/lumora/cellarix/settings.conf"; }

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_service = std::make_unique<FakeBottleService>();
        QVERIFY(m_service->start());
        m_service->setText("Manager.GetVersion", "3.3.4.008");
        InstalledApp::acceptAgreement();
    }
    void cleanup() {
        m_service.reset();
        m_home.reset();
    }

    void commandLine_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        const QString some = "../some file.exe";
        QTest::newRow("no such file") << QStringList{"/nowhere/a.exe"} << "No such file:";
        QTest::newRow("directory") << QStringList{"/tmp"} << "Not a Windows program:";
        QTest::newRow("no bottle in the url") << QStringList{"lumorawine://abc"} << "Invalid url:";
        QTest::newRow("empty bottle") << QStringList{"lumorawine:///uuid"} << "Invalid url:";
        QTest::newRow("unknown bottle") << QStringList{"lumorawine://gone/uuid"} << "Invalid bottles name:";
        QTest::newRow("empty word") << QStringList{""} << "Invalid url:";
        QTest::newRow("batch file without debug") << QStringList{"@/run.bat"} << "Not a Windows program:";
        QTest::newRow("package") << QStringList{"@/x.cxb"} << "open cxb file:";
        QTest::newRow("zero bytes") << QStringList{"@/zero.exe"} << "not a file";
        QTest::newRow("directory with suffix") << QStringList{"@/folder.exe"} << "not a file";
        QTest::newRow("pipe") << QStringList{"@/pipe.exe"} << "not a file";
        QTest::newRow("short fixup") << QStringList{"--fixup", "b", "u"}
                                     << "Invalid fixup arguments, need at least bottlesName and programUuid";
        QTest::newRow("short open") << QStringList{"--open", "b"} << "Invalid open arguments, eg:";
    }

    void commandLine() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        m_home->write("zero.exe", "");
        m_home->write("run.bat", "@echo off");
        m_home->write("x.cxb", "x");
        QDir(m_home->path()).mkdir("folder.exe");
        QCOMPARE(::mkfifo(qPrintable(m_home->path() + "/pipe.exe"), 0600), 0);
        arguments.replaceInStrings("@", m_home->path());
        InstalledApp app(arguments);
        QVERIFY2(app.waitForLog(message), qPrintable(app.log()));
        // It may still show why.
        if (app.isRunning())
            app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 1);
    }

    /// Where the desktop takes notifications, there is no window to close.
    void noProgramIsNotified() {
        m_service = std::make_unique<FakeBottleService>();
        QVERIFY(m_service->start(true));
        QVERIFY(m_service->takeName("org.freedesktop.Notifications"));
        m_service->setAnswers("Notify", {{{"number", 1}}});
        InstalledApp app({m_home->write("notes.txt", "x")});
        QCOMPARE(app.waitForExit(), 1);
        QCOMPARE(m_service->calls("Notify").value(0).arguments.at(3).toString(),
                 QString("\"notes.txt\" cannot be opened"));
        QVERIFY2(!app.log().contains("refusal_notice"), qPrintable(app.log()));
    }

    void noDisplay_data() {
        const Table<QString, int, QString> row("argument", "status", "message");
        row("help", "--help", 0, "--fixup");
        row("version", "--version", 0, "cellarix 3.3.4.008");
        row("a file", "/nowhere/a.exe", 1, "Cellarix cannot open the display \":4711\".");
    }

    void noDisplay() {
        QFETCH(QString, argument);
        QFETCH(QString, message);
        InstalledApp app({argument}, {"QT_QPA_PLATFORM=", "WAYLAND_DISPLAY=", "DISPLAY=:4711"});
        QTEST(app.waitForExit(), "status");
        QVERIFY2(app.log().contains(message), qPrintable(app.log()));
    }

    /// Each way into the program ends by itself, with a reason on the screen, instead of waiting.
    void noSessionBus_data() {
        const Table<QStringList, QString, int> row("arguments", "message", "status");
        row("file", {"@/program.exe"}, "show failed", 0);
        row("library", {}, "call listAllPrograms failed", 0);
        row("program", {"lumorawine://b/u"}, "no session bus", 1);
        row("no program", {"@/run.bat"}, "refusal_notice", 1);
    }

    void noSessionBus() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        m_home->write("program.exe", smallProgram());
        m_home->write("run.bat", "@echo off");
        arguments.replaceInStrings("@", m_home->path());
        InstalledApp app(arguments, {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere/bus"});
        QVERIFY2(app.waitForLog(message), qPrintable(app.log()));
        app.signal(SIGTERM);
        QTEST(app.waitForExit(5000), "status");
    }

    void sameFileAgain() {
        m_service->setError("Bottles.createBottles", "no");
        const QString file = m_home->write("program.exe", smallProgram());
        InstalledApp app({file});
        QVERIFY2(app.waitForLog("add exe runner:"), qPrintable(app.log()));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(InstalledApp({file}).waitForExit(), 1);
        QTRY_COMPARE(app.log().count("::::"), 4);
        QCOMPARE(InstalledApp({"/nowhere/last.exe"}).waitForExit(), 1);
        QVERIFY(app.waitForLog("No such file:"));
        QCOMPARE(app.log().count("already_running_dialog"), 1);
        app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 0);
    }

    /// Nothing ever waits for the version check.
    void hungService_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("bad file") << QStringList{"/nowhere/a.exe"} << 1;
        QTest::newRow("version") << QStringList{"--version"} << 0;
        QTest::newRow("bad option") << QStringList{"--nonsense"} << 1;
    }

    void hungService() {
        QFETCH(QStringList, arguments);
        m_service->setHeld("Manager.GetVersion", "3.3.4.008");
        InstalledApp app(arguments);
        QTEST(app.waitForExit(5000), "status");
    }

    void serviceTrouble_data() {
        QTest::addColumn<QString>("trouble");
        QTest::addColumn<QString>("message");
        QTest::newRow("absent") << "absent"
                                << "Could not connect to the D-Bus service.";
        QTest::newRow("other version") << "version"
                                       << "D-Bus version mismatch. Expected:";
        QTest::newRow("dies in createBottles") << "dies"
                                               << "reply is invalid";
        QTest::newRow("malformed answers") << "malformed"
                                           << "not exists";
        QTest::newRow("errors") << "errors"
                                << "Failed to fetch bottles config.";
    }

    /// A launch goes as far as the service lets it, then waits in its banner.
    void serviceTrouble() {
        QFETCH(QString, trouble);
        QFETCH(QString, message);
        if (trouble == "absent") {
            m_service->kill();
            QVERIFY(m_service->waitUntilGone());
        } else if (trouble == "version") {
            m_service->setText("Manager.GetVersion", "1.0");
        } else if (trouble == "dies") {
            m_service->setVanish("Bottles.createBottles");
        } else if (trouble == "malformed") {
            for (const char* method : {"list", "get", "createBottles", "checkPublicBottles"})
                m_service->setText(QString("Bottles.") + method, "}{\x01 nonsense");
        } else {
            for (const char* method : {"list", "get", "createBottles"})
                m_service->setError(QString("Bottles.") + method, "no");
        }
        const QString file = m_home->write("program.exe", smallProgram());
        InstalledApp app({file});
        QVERIFY2(app.waitForLog("show failed", 60000), qPrintable(app.log()));
        QVERIFY2(app.log().contains(message), qPrintable(app.log()));
        app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 0);
    }

    void brokenSettings_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("binary") << QByteArray("\x00\xff\xfe[[[\n=", 9);
        QTest::newRow("half a line") << QByteArray("[basic]\nupdate_log.ver");
    }

    /// Nothing recorded means that the agreement is asked; the broken file is still there, under another
    /// name.
    void brokenSettings() {
        QFETCH(QByteArray, content);
        m_home->write(".config/lumora/cellarix/settings.conf", content);
        InstalledApp app({"--service"});
        QVERIFY2(app.waitForLog("service_agreement_dialog"), qPrintable(app.log()));
        app.signal(SIGTERM);
        QVERIFY(app.waitForExit() >= 0);
        QByteArray kept;
        for (const QFileInfo& file : QDir(QFileInfo(settingsFile()).path()).entryInfoList(QDir::Files))
            kept += readFile(file.filePath());
        QVERIFY(kept.contains(content.left(8)));
    }

    /// What another start hands over waits for the answer, and goes with the refusal.
    void agreementIsNotOvertaken() {
        QVERIFY(QFile::remove(settingsFile()));
        InstalledApp app({"/nowhere/first.exe"});
        QVERIFY2(app.waitForLog("service_agreement_dialog"), qPrintable(app.log()));
        QCOMPARE(InstalledApp({"/nowhere/second.exe"}).waitForExit(), 1);
        QVERIFY2(app.waitForLog("::::"), qPrintable(app.log()));
        app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 1);
        QVERIFY2(!app.log().contains("No such file:"), qPrintable(app.log()));
    }

    void readOnlySettings() {
        // Root writes into read-only directories; a directory in the file's place stops everybody.
        QVERIFY(QFile::remove(settingsFile()));
        QVERIFY(QDir().mkpath(settingsFile() + "/in-the-way"));
        InstalledApp app({"--service"});
        QVERIFY2(app.waitForLog("service_agreement_dialog"), qPrintable(app.log()));
        app.signal(SIGTERM);
        QVERIFY(app.waitForExit() >= 0);
    }

    void noRoomForTheLog() {
        const QString cache = m_home->cache() + "/lumora/cellarix";
        QDir().mkpath(cache);
        QVERIFY(QFile::link("/dev/full", cache + "/cellarix.log"));
        InstalledApp app({"--service"});
        QVERIFY(app.waitForLog("cellarix start"));
        app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 0);
    }

    void killedInstanceLeavesNoTrace() {
        InstalledApp dead({"--service"});
        QVERIFY(dead.waitForLog("cellarix start"));
        dead.signal(SIGKILL);
        QCOMPARE(dead.waitForExit(), -1);
        InstalledApp next({"--service"});
        QVERIFY2(next.waitForLog("cellarix start"), qPrintable(next.log()));
        next.signal(SIGTERM);
        QCOMPARE(next.waitForExit(), 0);
    }

    void helpAndBadOption() {
        QCOMPARE(InstalledApp({"--help"}).waitForExit(), 0);
        InstalledApp bad({"--no-such-option"});
        QCOMPARE(bad.waitForExit(), 1);
        QVERIFY2(bad.log().contains("no-such-option"), qPrintable(bad.log()));
    }
};

QTEST_GUILESS_MAIN(BadInputTest)
#include "BadInputTest.moc"
