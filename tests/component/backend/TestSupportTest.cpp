#include <signal.h>

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QStandardPaths>
#include <QtTest>

#include "support/ChildProcess.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"
#include "support/XSession.h"

using namespace TestSupport;

/// What the fixtures promise where no other test would notice.
class TestSupportTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void homeIsGivenBack() {
        const QString before = QDir::homePath();
        QString path;
        {
            const TestHome home;
            path = home.path();
            QCOMPARE(QDir::homePath(), path);
            QVERIFY(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).startsWith(path));
            QCOMPARE(QFile::permissions(home.runtime()) & (QFile::ReadGroup | QFile::ExeOther),
                     QFile::Permissions());
        }
        QCOMPARE(QDir::homePath(), before);
        QVERIFY(!QFileInfo::exists(path));
    }

    void serviceIsActivated() {
        PrivateBus bus;
        const QString scenario = m_dir.path() + "/scenario.json";
        QFile file(scenario);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"GetVersion\":{\"text\":\"9\"}}");
        file.close();
        bus.addActivatableService("com.lumora.LumoraWineLauncher",
                                  FakeBottleService::executable() + " --scenario " + scenario);
        const QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), "activation");
        QDBusInterface manager("com.lumora.LumoraWineLauncher", "/com/lumora/Manager", "com.lumora.Manager",
                               connection);
        QCOMPARE(QDBusReply<QString>(manager.call("GetVersion")).value(), QString("9"));
        QDBusConnection::disconnectFromBus("activation");
    }

    void childrenEnd() {
        qint64 pid = 0;
        {
            ChildProcess child;
            child.start("sh", {"-c", "trap '' TERM; echo up; while :; do sleep 0.1; done"});
            QCOMPARE(child.readLineWithin(), QString("up"));
            pid = child.processId();
        }
        QCOMPARE(::kill(pid_t(pid), 0), -1);
        QCOMPARE(runProcess("sh", {"-c", "echo $PROBE; exit 3"}, {"PROBE=a=b"}).output, QString("a=b\n"));
        QCOMPARE(runProcess("sleep", {"30"}, {}, 100).exitCode, -1);
    }

    void windowsOfOthers() {
        const XSession session;
        if (!session.isRunning())
            QSKIP("needs Xvfb and openbox");
        if (QStandardPaths::findExecutable("xmessage").isEmpty())
            QSKIP("needs xmessage");
        ChildProcess program;
        program.setVariable("DISPLAY", session.display());
        program.setVariable("PROBE", "seen");
        program.start("xmessage", {"-title", "A probe", "hello"});
        const WindowFinder finder(session.display());
        const WindowInfo window = finder.waitForTitle("A probe");
        QVERIFY(window.id != 0);
        QVERIFY(window.className.contains("Xmessage"));
        QVERIFY(!window.geometry.isEmpty());
        QCOMPARE(environmentOf(program.processId()).value("PROBE"), QString("seen"));
        QVERIFY(finder.close(window.id));
        QVERIFY(finder.waitUntilGone(window.id));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestSupportTest)
#include "TestSupportTest.moc"
