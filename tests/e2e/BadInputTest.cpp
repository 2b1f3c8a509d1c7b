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

/// The headers of a 64-bit program, without code.
QByteArray smallProgram() {
    QByteArray bytes(1024, '\0');
    bytes.replace(0, 2, "MZ").replace(60, 1, "\x40");
    bytes.replace(64, 2, "PE").replace(68, 2, "\x64\x86");
    return bytes;
}

}  // namespace

/// The installed application with bad arguments, a missing or hanging service, no bus and no display: nothing
/// hangs, and each start says why it ends.
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
        const Table<QStringList, QString> row("arguments", "message");
        row("no bottle in the url", QStringList{"lumorawine://abc"}, "Invalid url:");
        row("unknown bottle", QStringList{"lumorawine://gone/uuid"}, "Invalid bottles name:");
        row("package", QStringList{"@/x.cxb"}, "open cxb file:");
        row("short fixup", QStringList{"--fixup", "b", "u"},
            "Invalid fixup arguments, need at least bottlesName and programUuid");
        row("short open", QStringList{"--open", "b"}, "Invalid open arguments, eg:");
    }
    void commandLine() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        m_home->write("x.cxb", "x");
        arguments.replaceInStrings("@", m_home->path());
        InstalledApp app(arguments);
        QCOMPARE(app.waitForExit(), 1);
        QVERIFY2(app.log().contains(message), qPrintable(app.log()));
    }

    /// Where the desktop shows notifications, no window is opened.
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

    /// Each kind of start ends with a reason on the screen instead of waiting.
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

    /// No start waits for the version check.
    void hungService_data() {
        const Table<QStringList, int> row("arguments", "status");
        row("bad file", QStringList{"/nowhere/a.exe"}, 1);
        row("version", QStringList{"--version"}, 0);
        row("bad option", QStringList{"--nonsense"}, 1);
    }
    void hungService() {
        QFETCH(QStringList, arguments);
        m_service->setHeld("Manager.GetVersion", "3.3.4.008");
        InstalledApp app(arguments);
        QTEST(app.waitForExit(5000), "status");
    }

    void serviceTrouble_data() {
        const Table<QString, QString> row("trouble", "message");
        row("absent", "absent", "Could not connect to the D-Bus service.");
        row("other version", "version", "D-Bus version mismatch. Expected:");
    }

    /// The launch fails, and its banner waits for the user.
    void serviceTrouble() {
        QFETCH(QString, trouble);
        QFETCH(QString, message);
        if (trouble == "absent") {
            m_service->kill();
            QVERIFY(m_service->waitUntilGone());
        } else {
            m_service->setText("Manager.GetVersion", "1.0");
        }
        const QString file = m_home->write("program.exe", smallProgram());
        InstalledApp app({file});
        QVERIFY2(app.waitForLog("show failed", 60000), qPrintable(app.log()));
        QVERIFY2(app.log().contains(message), qPrintable(app.log()));
        app.signal(SIGTERM);
        QCOMPARE(app.waitForExit(), 0);
    }

    /// What another start hands over waits until the agreement is answered, and is dropped with a refusal.
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
};

QTEST_GUILESS_MAIN(BadInputTest)
#include "BadInputTest.moc"
