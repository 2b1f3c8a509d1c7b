#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
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
        const Table<Mode, QString, QJsonArray, Call> row("mode", "signature", "arguments", "call");
        const auto when = QDateTime::fromMSecsSinceEpoch(1700000000999, Qt::UTC);
        row("delete", Fire, "s", {"b"}, CALL(deleteBottle("b")));
        row("setEmulator", Fire, "ss", {"b", "e"}, CALL(setEmulator("b", "e")));
        row("setRunner", Fire, "ssb", {"b", "r", true}, CALL(setRunner("b", "r")));
        row("setDxvk", Fire, "ssb", {"b", "-", true}, CALL(setDxvk("b", "-")));
        row("setVkD3D", Fire, "ssb", {"b", "-", true}, CALL(setVkD3D("b", "-")));
        row("cancelInstallingComponent", Block, "sss", {"b", "vkd3d", "c"},
            CALL(cancelInstallingComponent("b", ComponentKind::vkd3d(), "c")));
        row("installDependency", Fire, "ss", {"b", "d"}, CALL(installDependency("b", "d")));
        row("reinstallDependency", Fire, "ss", {"b", "d"}, CALL(reinstallDependency("b", "d")));
        row("setDPI", Fire, "si", {"b", 120}, CALL(setDPI("b", 120)));
        row("setCpuRendering", Fire, "sb", {"b", true}, CALL(setCpuRendering("b", true)));
        row("setDiscreteGpu", Fire, "sb", {"b", false}, CALL(setDiscreteGpu("b", false)));
        row("setMemOptimized", Fire, "sb", {"b", true}, CALL(setMemOptimized("b", true)));
        row("setNTSync", Fire, "sb", {"b", true}, CALL(setNTSync("b", true)));
        row("setD3dRenderer", Fire, "ss", {"b", "gdi"}, CALL(setD3dRenderer("b", "gdi")));
        row("setWindowsVersion", Fire, "ss", {"b", "win10"}, CALL(setWindowsVersion("b", "win10")));
        row("updateDllOverride", Fire, "sssb", {"b", "d", "native", false},
            CALL(updateDllOverride("b", "d", "native")));
        row("updateDllOverride", Fire, "sssb", {"b", "d", "", true}, CALL(removeDllOverride("b", "d")));
        row("getExternalProgramsDllList", Block, "s", {"b"}, CALL(getExternalProgramsDllList("b")));
        row("getExternalProgramsUpdateExes", Block, "s", {"b"}, CALL(getExternalProgramsUpdateExes("b")));
        row("listFontReplacements", Watch, "s", {"b"}, CALL(listFontReplacements("b", &owner, ignore)));
        row("addFontReplacements", Fire, "sss", {"b", "f", "r"}, CALL(addFontReplacements("b", "f", "r")));
        row("removeFontReplacement", Fire, "ss", {"b", "f"}, CALL(removeFontReplacement("b", "f")));
        row("listAllPrograms", Loop, "", {}, CALL(listAllPrograms(&owner)));
        row("listBottlesAllPrograms", Watch, "s", {"b"}, CALL(listBottlesAllPrograms("b", &owner, ignore)));
        row("updateExternalProgram", Block, "ss", {"b", R"({"id":"u","name":"n"})"},
            CALL(updateExternalProgram("b", {{"id", "u"}, {"name", "n"}})));
        row("updateExternalProgram", Fire, "ss", {"b", R"({"id":"u"})"},
            CALL(fireUpdateExternalProgram("b", {{"id", "u"}})));
        row("scanApplicationLinks", Loop, "sxb", {"b", 1700000000, true},
            CALL(scanApplicationLinks("b", when, &owner)));
        row("createDesktopEntry", Block, "ss", {"b", "u"}, CALL(createDesktopEntry("b", "u")));
        row("killProgram", Fire, "ss", {"b", "u"}, CALL(killProgram("b", "u")));
        row("killWineServer", Fire, "s", {"b"}, CALL(killWineServer("b")));
        row("run_command", Fire, "ss", {"b", "regedit.exe"}, CALL(runCommand("b", "regedit.exe")));
        row("exportFileAssociations", Fire, "sas", {"b", QJsonArray{".a", ".b"}},
            CALL(exportFileAssociations("b", {".a", ".b"})));
        row("dumpManifest", Block, "s", {"{}"}, CALL(dumpManifest("{}")));
        row("getRunnerVersion", Block, "s", {"r"}, CALL(getRunnerVersion("r")));
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
        QTEST(received.signature, "signature");
        QTEST(received.arguments, "arguments");
        QCOMPARE(fake->release(method), waits ? 0 : 1);
        config().list();  // the released answer is here before this one
        QCoreApplication::processEvents();
    }

    void timeOut() { QCOMPARE(config().timeout(), 3600000); }

    void readers_data() {
        const Table<QString> row("mishap");
        for (const char* mishap : {"", "error", "malformed", "empty", "vanish", "absent"})
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
            {"getEmulators", R"({"installed":{"box64":"0.3","box86":"0.2"},"using":"box64"})",
             "box64,box86,0.3,0.2,box64", "Failed to fetch emulators info.",
             [] {
                 const EmulatorsInfo info = config().getEmulators("b");
                 return (info.installed.keys() + info.installed.values() << info.usingName).join(',');
             }},
        };
        if (mishap == "absent")
            fake->kill();
        for (const auto& reader : readers) {
            if (!fake->isRunning() && mishap != "absent")
                QVERIFY(fake->start());
            if (mishap.isEmpty())
                fake->setText(reader.method, reader.text);
            else if (mishap == "error")
                fake->setError(reader.method, "no");
            else if (mishap == "malformed")
                fake->setText(reader.method, R"({"Path":)");
            else if (mishap != "absent")
                fake->setAnswers(reader.method, {{{mishap, true}}});
            const LogCapture log;
            QString seen = reader.read();
            if (mishap.isEmpty())
                QCOMPARE(seen, reader.seen);
            else
                QVERIFY2(seen.remove(',').isEmpty(), qPrintable(seen));
            QCOMPARE(log.contains(QtWarningMsg, reader.warning), !mishap.isEmpty() && mishap != "malformed");
            fake->waitUntilGone(mishap == "vanish" ? 10000 : 0);
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
        const QJsonObject no{{"ok", false}};
        row("made", {{"text", R"({"ok":true,"path":"/p"})"}}, {{"ok", true}, {"path", "/p"}});
        row("malformed", {{"text", "{"}}, {});
        row("refused", {{"error", "full"}}, no);
        row("vanishing", {{"vanish", true}}, no);
        row("absent", {}, no);
    }
    void createBottles() {
        QFETCH(QJsonObject, answer);
        const LogCapture log;
        if (answer.isEmpty())
            fake->kill();
        else
            fake->setAnswers("createBottles", {answer});
        QSignalSpy created(&config(), &BottlesConfig::bottlesCreated);
        config().createBottles("new", "runner");
        QVERIFY(created.isEmpty());
        QTRY_COMPARE(created.count(), 1);
        QCOMPARE(created[0][0].toString(), "new");
        QTEST(created[0][1].toJsonObject(), "result");
        QVERIFY2(log.contains(answer.contains("text") ? "create bottles result: " : "reply is invalid"),
                 qPrintable(log.text()));
        QTRY_VERIFY(config().findChildren<QDBusPendingCallWatcher*>().isEmpty());
    }

    void busSignals() {
        const struct {
            const char *name, *signature;
            QJsonArray arguments;
        } rows[] = {
            {"dependencyDownloadProgress", "ssuus", {"b", "d", 10, 4294967295.0, "s"}},
            {"dependencySetupDescription", "sss", {"b", "d", "t"}},
            {"dependencySetupStepNotify", "ssii", {"b", "d", 1, 2}},
            {"bottles_deleted", "s", {"b"}},
            {"program_deleted", "ss", {"b", "u"}},
            {"program_added", "sss", {"b", "u", "{}"}},
            {"program_updated", "sss", {"b", "u", "{}"}},
            {"program_exited", "s", {"u"}},
            {"component_waiting_downloaded", "sss", {"b", "runner", "c"}},
            {"component_setup_start", "sss", {"b", "runner", "c"}},
            {"component_setup_done", "ssss", {"b", "runner", "c", "{}"}},
            {"dependencySetupDone", "sss", {"b", "d", R"({"ok":true})"}},
        };
        QSignalSpy installed(&config(), &BottlesConfig::dependecyInstalled);
        const QMetaObject& meta = BottlesConfig::staticMetaObject;
        for (const auto& row : rows) {
            int index = meta.methodCount() - 1;
            while (index > 0 && meta.method(index).name() != row.name)
                --index;
            QSignalSpy spy(&config(), meta.method(index));
            config().list();  // the subscription has reached the bus before this call came back
            QVERIFY(fake->emitSignal(row.name, row.signature, row.arguments));
            QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 5000);
            QCOMPARE(QJsonArray::fromVariantList(spy[0]), row.arguments);
        }
        QVERIFY(fake->emitSignal("dependencySetupDone", "sss", {"b", "d", "{torn"}));
        QTRY_COMPARE(installed.count(), 2);
        QCOMPARE(installed[0][2].toJsonObject(), (QJsonObject{{"ok", true}}));
        QCOMPARE(installed[1][2].toJsonObject(), QJsonObject());
    }

    // Signals of the wire arrive with the wire's types or not at all, and the local ones never come from the
    // bus.
    void foreignSignals() {
        QSignalSpy created(&config(), &BottlesConfig::bottlesCreated);
        QSignalSpy step(&config(), &BottlesConfig::dependencySetupStepNotify);
        QSignalSpy exited(&config(), &BottlesConfig::program_exited);
        config().list();
        QVERIFY(fake->emitSignal("bottlesCreated", "ss", {"b", "{}"}));
        QVERIFY(fake->emitSignal("dependencySetupStepNotify", "ssss", {"b", "d", "1", "2"}));
        QVERIFY(fake->emitSignal("program_exited", "s", {"u"}));
        QTRY_COMPARE(exited.count(), 1);
        QCOMPARE(created.count(), 0);
        QCOMPARE(step.count(), 0);
    }

    void scanApplicationLinks_data() {
        const Table<QJsonObject, QJsonArray, QString> row("answer", "links", "line");
        row("found", {{"text", R"(["a.lnk",{"name":"b"}])"}}, {"a.lnk", QJsonObject{{"name", "b"}}},
            "added lnks: ");
        row("malformed", {{"text", R"(["a.lnk")"}}, {}, "Failed to parse JSON: ");
        row("not an array", {{"text", "{}"}}, {}, "added lnks: ");
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

    void resultsForCallers() {
        const LogCapture log;
        fake->setAnswers("getInstallingDependency", {{{"text", "vcrun2019"}}, {{"error", "busy"}}});
        QCOMPARE(config().getInstallingDependency("b"), "vcrun2019");
        QCOMPARE(config().getInstallingDependency("b"), QString());
        QVERIFY2(log.contains(QtDebugMsg, "true::::vcrun2019"), qPrintable(log.text()));
        QVERIFY2(log.contains(QtDebugMsg, "false::busy::"), qPrintable(log.text()));
        fake->setAnswers("checkPublicBottles", {{{"text", "public/office"}}, {{"error", "no table"}}});
        QCOMPARE(config().checkPublicBottles("{}").text, "public/office");
        QCOMPARE(config().checkPublicBottles("{}").errorMessage, "no table");
        fake->setAnswers("cancelInstallingDependency", {{{"empty", true}}});
        QVERIFY(config().cancelInstallingDependency("b").ok);

        QStringList seen;
        fake->setAnswers("listDllOverrides", {{{"text", R"({"a":"native","b":""})"}}, {{"error", "gone"}}});
        for (int calls = 1; calls <= 2; ++calls) {
            config().listDllOverrides("b", &owner, [&](const BusResult& result) {
                seen << (result.ok ? result.object().keys().join(',') : result.errorMessage);
            });
            QTRY_COMPARE(seen.size(), calls);
        }
        QCOMPARE(seen, QStringList({"a,b", "gone"}));
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
