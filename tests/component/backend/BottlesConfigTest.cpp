#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>
#include <functional>

#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"
#include "support/fakeservice/Scenario.h"

using TestSupport::FakeBottleService;
using TestSupport::LogCapture;
using TestSupport::RecordedCall;
using TestSupport::Table;

namespace {
BottlesConfig& config() {
    return *BottlesConfig::instance();
}
enum Mode { Block, Fire, Watch, Loop };
using Call = std::function<void(BottlesConfig&)>;
void ignore(const BusResult&) {}
#define CALL(...) [=](BottlesConfig& config) { config.__VA_ARGS__; }
}  // namespace
Q_DECLARE_METATYPE(Call)
Q_DECLARE_METATYPE(Mode)

/// The bottle service's client against a service that is a real process on a bus of its own.
class BottlesConfigTest : public QObject {
    Q_OBJECT

    TestSupport::PrivateBus bus;
    std::unique_ptr<FakeBottleService> fake;
    QObject owner;

private Q_SLOTS:
    void init() {
        fake = std::make_unique<FakeBottleService>();
        QVERIFY(fake->start());
    }
    void cleanup() { fake.reset(); }

    void wire_data() {
        const Table<Mode, QJsonArray, Call> row("mode", "arguments", "call");
        const auto when = QDateTime::fromMSecsSinceEpoch(1700000000999, Qt::UTC);
        row("delete", Fire, {"b"}, CALL(deleteBottle("b")));
        row("setDxvk", Fire, {"b", "-", true}, CALL(setDxvk("b", "-")));
        row("cancelInstallingComponent", Block, {"b", "vkd3d", "c"},
            CALL(cancelInstallingComponent("b", ComponentKind::vkd3d(), "c")));
        row("updateDllOverride", Watch, {"b", "d", "", true},
            CALL(removeDllOverride("b", "d", &owner, ignore)));
        row("getExternalProgramsDllList", Watch, {"b"},
            CALL(getExternalProgramsDllList("b", &owner, ignore)));
        row("listFontReplacements", Watch, {"b"}, CALL(listFontReplacements("b", &owner, ignore)));
        row("listAllPrograms", Loop, {}, CALL(listAllPrograms(&owner)));
        row("updateExternalProgram", Block, {"b", R"({"id":"u","name":"n"})"},
            CALL(updateExternalProgram("b", {{"id", "u"}, {"name", "n"}})));
        row("scanApplicationLinks", Loop, {"b", 1700000000, true},
            CALL(scanApplicationLinks("b", when, &owner)));
        row("killProgram", Fire, {"b", "u"}, CALL(killProgram("b", "u")));
        row("exportFileAssociations", Fire, {"b", QJsonArray{".a", ".b"}},
            CALL(exportFileAssociations("b", {".a", ".b"})));
    }

    // The mode shows in what happens while the answer is on its way: a block call turns no event loop, a loop
    // call does, and fire and watch come back while the service still holds the answer back.
    void wire() {
        QFETCH(Mode, mode);
        QFETCH(Call, call);
        const QString method = QTest::currentDataTag();
        const LogCapture log;
        const bool waits = mode == Block || mode == Loop;
        const int lateMs = 100;
        if (waits)
            fake->setLate(method, "", lateMs);
        else
            fake->setHeld(method, "");
        fake->clearCalls();
        bool loopTurned = false;
        QTimer::singleShot(0, &owner, [&] { loopTurned = true; });
        QElapsedTimer clock;
        clock.start();
        call(config());
        QVERIFY(!waits || clock.elapsed() >= lateMs);
        QCOMPARE(loopTurned, mode == Loop);

        const RecordedCall received = fake->waitForCall(method);
        QCOMPARE(received.path, "/com/lumora/Manager/Bottles");
        QCOMPARE(received.interface, "com.lumora.Manager.Bottles");
        QTEST(received.arguments, "arguments");
        QCOMPARE(fake->release(method), waits ? 0 : 1);
        config().list();  // the released answer is here before this one
        QCoreApplication::processEvents();
    }

    void timeOut() { QCOMPARE(config().timeout(), 3600000); }

    // The other methods: each is one of the contract, with the types that it has there.
    void contract() {
        const Call methods[] = {CALL(setEmulator("b", "e")),
                                CALL(setRunner("b", "r")),
                                CALL(setVkD3D("b", "-")),
                                CALL(installDependency("b", "d")),
                                CALL(reinstallDependency("b", "d")),
                                CALL(setDPI("b", 120)),
                                CALL(setCpuRendering("b", true)),
                                CALL(setDiscreteGpu("b", false)),
                                CALL(setMemOptimized("b", true)),
                                CALL(setNTSync("b", true)),
                                CALL(setD3dRenderer("b", "gdi")),
                                CALL(setWindowsVersion("b", "win10")),
                                CALL(killWineServer("b")),
                                CALL(updateDllOverride("b", "d", "native", &owner, ignore)),
                                CALL(addFontReplacements("b", "f", "r", &owner, ignore)),
                                CALL(removeFontReplacement("b", "f", &owner, ignore)),
                                CALL(runCommand("b", "regedit.exe")),
                                CALL(createDesktopEntry("b", "u")),
                                CALL(fireUpdateExternalProgram("b", {})),
                                CALL(listBottlesAllPrograms("b", &owner, ignore)),
                                CALL(getExternalProgramsUpdateExes("b", &owner, ignore)),
                                CALL(dumpManifest("{}", &owner, ignore)),
                                CALL(getRunnerVersion("r"))};
        for (const Call& method : methods)
            method(config());
        const QVector<RecordedCall> calls = fake->calls();
        QCOMPARE(calls.size(), int(std::size(methods)));
        for (const RecordedCall& call : calls)
            QCOMPARE(call.method + ' ' + call.signature,
                     call.method + ' ' + Scenario::bottleSignature(call.method));
    }

    void readers_data() {
        const Table<QString> row("mishap");
        for (const char* mishap : {"", "error", "malformed", "absent"})
            row(mishap, mishap);
    }
    void readers() {
        QFETCH(QString, mishap);
        const struct {
            const char *method, *text, *seen, *warning;
            std::function<QString()> read;
        } readers[] = {
            {"list", R"(["one","public/two"])", "one,public/two", "Failed to fetch bottles list.",
             [] { return config().list().join(','); }},
            {"get", R"({"Path":"/p"})", "/p", "Failed to fetch bottles config.",
             [] { return config().get("b")["Path"].toString(); }},
            {"getInstallingComponents", R"({"wine":"DOWNLOADING"})", "DOWNLOADING",
             "Failed to fetch bottles config.",
             [] { return config().getInstallingComponents("b", "runner")["wine"].toString(); }},
            {"getEmulators", R"({"installed":{"box64":"0.3"},"using":"box64"})", "0.3,box64",
             "Failed to fetch emulators info.",
             [] {
                 const EmulatorsInfo info = config().getEmulators("b");
                 return (info.installed.values() << info.usingName).join(',');
             }},
        };
        if (mishap == "absent")
            fake->kill();
        for (const auto& reader : readers) {
            if (mishap == "error")
                fake->setError(reader.method, "no");
            else if (mishap != "absent")
                fake->setText(reader.method, mishap.isEmpty() ? reader.text : R"({"Path":)");
            const LogCapture log;
            QCOMPARE(reader.read().remove(mishap.isEmpty() ? "" : ","), mishap.isEmpty() ? reader.seen : "");
            QCOMPARE(log.contains(QtWarningMsg, reader.warning), mishap == "error" || mishap == "absent");
        }
    }

    void serviceAppears() {
        fake = std::make_unique<FakeBottleService>();
        QVERIFY(fake->start(true));
        QVERIFY(config().list().isEmpty());
        QSignalSpy deleted(&config(), &BottlesConfig::bottles_deleted);
        QVERIFY(fake->takeName());
        fake->setText("list", "[\"one\"]");
        QCOMPARE(config().list(), QStringList{"one"});
        QVERIFY(fake->emitSignal("bottles_deleted", "s", {"one"}));
        QTRY_COMPARE(deleted.count(), 1);
    }

    void createBottles_data() {
        const Table<QJsonObject, QJsonObject> row("answer", "result");
        row("made", {{"text", R"({"ok":true,"path":"/p"})"}}, {{"ok", true}, {"path", "/p"}});
        row("malformed", {{"text", "{"}}, {});
        row("refused", {{"error", "full"}}, {{"ok", false}});
    }
    void createBottles() {
        QFETCH(QJsonObject, answer);
        const LogCapture log;
        fake->setAnswers("createBottles", {answer});
        QSignalSpy created(&config(), &BottlesConfig::bottlesCreated);
        config().createBottles("new", "runner");
        QVERIFY(created.isEmpty());
        QTRY_COMPARE(created.count(), 1);
        QCOMPARE(created[0][0].toString(), "new");
        QTEST(created[0][1].toJsonObject(), "result");
        QVERIFY2(log.contains(answer.contains("text") ? "create bottles result: " : "reply is invalid"),
                 qPrintable(log.text()));
    }

    void dependencyInstalled() {
        QSignalSpy installed(&config(), &BottlesConfig::dependecyInstalled);
        config().list();  // the subscription has reached the bus before this call came back
        QVERIFY(fake->emitSignal("dependencySetupDone", "sss", {"b", "d", R"({"ok":true})"}));
        QVERIFY(fake->emitSignal("dependencySetupDone", "sss", {"b", "d", "{torn"}));
        QTRY_COMPARE(installed.count(), 2);
        QCOMPARE(installed[0][2].toJsonObject(), (QJsonObject{{"ok", true}}));
        QCOMPARE(installed[1][2].toJsonObject(), QJsonObject());
    }

    void scanApplicationLinks_data() {
        const Table<QJsonObject, QJsonArray, QString> row("answer", "links", "line");
        row("found", {{"text", R"(["a.lnk"])"}}, {"a.lnk"}, "added lnks: ");
        row("malformed", {{"text", R"(["a.lnk")"}}, {}, "Failed to parse JSON: ");
        row("refused", {{"error", "no such bottle"}}, {}, "DBUS call failed: no such bottle");
    }
    void scanApplicationLinks() {
        QFETCH(QJsonObject, answer);
        const LogCapture log;
        fake->setAnswers("scanApplicationLinks", {answer});
        QTEST(config().scanApplicationLinks("b", QDateTime::currentDateTime()), "links");
        QFETCH(QString, line);
        QVERIFY2(log.contains(line), qPrintable(log.text()));
    }

    void installingDependency() {
        const LogCapture log;
        fake->setAnswers("getInstallingDependency", {{{"text", "vcrun2019"}}, {{"error", "busy"}}});
        QCOMPARE(config().getInstallingDependency("b"), "vcrun2019");
        QCOMPARE(config().getInstallingDependency("b"), QString());
        QVERIFY2(log.contains(QtDebugMsg, "true::::vcrun2019"), qPrintable(log.text()));
        QVERIFY2(log.contains(QtDebugMsg, "false::busy::"), qPrintable(log.text()));
    }

    void removeExternalProgram() {
        const TestSupport::TestHome home;
        const QString cache = home.write("bottle/fileinfo.cache", "{\"one\":{\"exename\":\"a\"},\"two\":{}}");
        fake->setBottle("b", {{"Path", home.path() + "/bottle"}});
        config().removeExternalProgram("b", "one");
        QCOMPARE(TestSupport::readFile(cache), QByteArray("{\"two\":{}}"));
        QCOMPARE(fake->calls("removeExternalProgram").value(0).arguments, (QJsonArray{"b", "one"}));

        // Without a directory nothing is written anywhere, but the service is still asked.
        config().removeExternalProgram("none", "one");
        QCOMPARE(fake->calls("removeExternalProgram").size(), 2);
        QVERIFY(!QFileInfo::exists("/fileinfo.cache"));
    }

    void blockFromWorkerThread() {
        fake->setText("list", "[\"one\"]");
        QStringList seen;
        std::unique_ptr<QThread> worker(QThread::create([&seen] {
            for (int i = 0; i < 20; ++i)
                seen += config().list();
        }));
        worker->start();
        for (int i = 0; i < 20; ++i)
            QCOMPARE(config().list(), QStringList{"one"});
        QVERIFY(worker->wait(20000));
        QCOMPARE(seen.size(), 20);
    }
};

QTEST_GUILESS_MAIN(BottlesConfigTest)
#include "BottlesConfigTest.moc"
