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
#include "support/TestHome.h"

using TestSupport::FakeBottleService;
using TestSupport::LogCapture;
using TestSupport::RecordedCall;

namespace {
BottlesConfig& config() {
    return *BottlesConfig::instance();
}
enum class Mode { Block, Fire, Watch, Loop };
using Call = std::function<void(QObject*)>;
}  // namespace
Q_DECLARE_METATYPE(Call)
Q_DECLARE_METATYPE(Mode)

/// The bottle service's client against a service that is a real process on a bus of its own.
class BottlesConfigTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        fake = std::make_unique<FakeBottleService>();
        QVERIFY(fake->start());
    }
    void cleanup() { fake.reset(); }

    void wire_data() {
        QTest::addColumn<Call>("call");
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QString>("signature");
        QTest::addColumn<QJsonArray>("arguments");
        const auto row = [](const char* method, Mode mode, const char* signature, const QJsonArray& arguments,
                            const Call& call) {
            QTest::newRow(method) << call << mode << QString(signature) << arguments;
        };
        const BottlesConfig::Handler nothing = [](const BusResult&) {};
        const QJsonObject record{{"id", "u"}, {"name", "n"}};
        const QString recordText = "{\"id\":\"u\",\"name\":\"n\"}";
        const QDateTime when = QDateTime::fromMSecsSinceEpoch(1700000000999, Qt::UTC);

        row("list", Mode::Block, "", {}, [](QObject*) { config().list(); });
        row("get", Mode::Block, "s", {"b"}, [](QObject*) { config().get("b"); });
        row("createBottles", Mode::Watch, "ss", {"b", "r"},
            [](QObject*) { config().createBottles("b", "r"); });
        row("delete", Mode::Fire, "s", {"b"}, [](QObject*) { config().deleteBottle("b"); });
        row("getEmulators", Mode::Block, "s", {"b"}, [](QObject*) { config().getEmulators("b"); });
        row("setEmulator", Mode::Fire, "ss", {"b", "e"}, [](QObject*) { config().setEmulator("b", "e"); });
        row("setRunner", Mode::Fire, "ssb", {"b", "r", true}, [](QObject*) { config().setRunner("b", "r"); });
        row("setDxvk", Mode::Fire, "ssb", {"b", "-", true}, [](QObject*) { config().setDxvk("b", "-"); });
        row("setVkD3D", Mode::Fire, "ssb", {"b", "-", true}, [](QObject*) { config().setVkD3D("b", "-"); });
        row("getInstallingComponents", Mode::Block, "ss", {"b", "runner"},
            [](QObject*) { config().getInstallingComponents("b", ComponentKind::runner()); });
        row("cancelInstallingComponent", Mode::Block, "sss", {"b", "vkd3d", "c"},
            [](QObject*) { config().cancelInstallingComponent("b", ComponentKind::vkd3d(), "c"); });
        row("installDependency", Mode::Fire, "ss", {"b", "d"},
            [](QObject*) { config().installDependency("b", "d"); });
        row("reinstallDependency", Mode::Fire, "ss", {"b", "d"},
            [](QObject*) { config().reinstallDependency("b", "d"); });
        row("getInstallingDependency", Mode::Block, "s", {"b"},
            [](QObject*) { config().getInstallingDependency("b"); });
        row("cancelInstallingDependency", Mode::Block, "s", {"b"},
            [](QObject*) { config().cancelInstallingDependency("b"); });
        row("setDPI", Mode::Fire, "si", {"b", 120}, [](QObject*) { config().setDPI("b", 120); });
        row("setCpuRendering", Mode::Fire, "sb", {"b", true},
            [](QObject*) { config().setCpuRendering("b", true); });
        row("setDiscreteGpu", Mode::Fire, "sb", {"b", false},
            [](QObject*) { config().setDiscreteGpu("b", false); });
        row("setMemOptimized", Mode::Fire, "sb", {"b", true},
            [](QObject*) { config().setMemOptimized("b", true); });
        row("setNTSync", Mode::Fire, "sb", {"b", true}, [](QObject*) { config().setNTSync("b", true); });
        row("setD3dRenderer", Mode::Fire, "ss", {"b", "gdi"},
            [](QObject*) { config().setD3dRenderer("b", "gdi"); });
        row("setWindowsVersion", Mode::Fire, "ss", {"b", "win10"},
            [](QObject*) { config().setWindowsVersion("b", "win10"); });
        row("listDllOverrides", Mode::Watch, "s", {"b"},
            [nothing](QObject* context) { config().listDllOverrides("b", context, nothing); });
        row("updateDllOverride", Mode::Fire, "sssb", {"b", "d", "native", false},
            [](QObject*) { config().updateDllOverride("b", "d", "native"); });
        row("getExternalProgramsDllList", Mode::Block, "s", {"b"},
            [](QObject*) { config().getExternalProgramsDllList("b"); });
        row("getExternalProgramsUpdateExes", Mode::Block, "s", {"b"},
            [](QObject*) { config().getExternalProgramsUpdateExes("b"); });
        row("listFontReplacements", Mode::Watch, "s", {"b"},
            [nothing](QObject* context) { config().listFontReplacements("b", context, nothing); });
        row("addFontReplacements", Mode::Fire, "sss", {"b", "f", "r"},
            [](QObject*) { config().addFontReplacements("b", "f", "r"); });
        row("removeFontReplacement", Mode::Fire, "ss", {"b", "f"},
            [](QObject*) { config().removeFontReplacement("b", "f"); });
        row("listAllPrograms", Mode::Loop, "", {}, [](QObject* owner) { config().listAllPrograms(owner); });
        row("listBottlesAllPrograms", Mode::Watch, "s", {"b"},
            [nothing](QObject* context) { config().listBottlesAllPrograms("b", context, nothing); });
        row("updateExternalProgram", Mode::Block, "ss", {"b", recordText},
            [record](QObject*) { config().updateExternalProgram("b", record); });
        row("removeExternalProgram", Mode::Block, "ss", {"b", "u"},
            [](QObject*) { config().removeExternalProgram("b", "u"); });
        row("scanApplicationLinks", Mode::Loop, "sxb", {"b", 1700000000, true},
            [when](QObject* owner) { config().scanApplicationLinks("b", when, owner); });
        row("createDesktopEntry", Mode::Block, "ss", {"b", "u"},
            [](QObject*) { config().createDesktopEntry("b", "u"); });
        row("killProgram", Mode::Fire, "ss", {"b", "u"}, [](QObject*) { config().killProgram("b", "u"); });
        row("killWineServer", Mode::Fire, "s", {"b"}, [](QObject*) { config().killWineServer("b"); });
        row("run_command", Mode::Fire, "ss", {"b", "regedit.exe"},
            [](QObject*) { config().runCommand("b", "regedit.exe"); });
        row("exportFileAssociations", Mode::Fire, "sas", {"b", QJsonArray{".a", ".b"}}, [](QObject*) {
            config().exportFileAssociations("b", {".a", ".b"});
        });
        row("dumpManifest", Mode::Block, "s", {"{}"}, [](QObject*) { config().dumpManifest("{}"); });
        row("checkPublicBottles", Mode::Block, "s", {"{}"},
            [](QObject*) { config().checkPublicBottles("{}"); });
        row("getRunnerVersion", Mode::Block, "s", {"r"}, [](QObject*) { config().getRunnerVersion("r"); });
    }

    // The mode shows in what happens while the answer is on its way: a block call turns no event loop, a loop
    // call does, and fire and watch come back while the service still holds the answer back.
    void wire() {
        QFETCH(Call, call);
        QFETCH(Mode, mode);
        const QString method = QTest::currentDataTag();
        const LogCapture log;
        const bool waits = mode == Mode::Block || mode == Mode::Loop;
        const int lateMs = 100;
        if (waits)
            fake->setLate(method, "", lateMs);
        else
            fake->setHeld(method, "");
        fake->clearCalls();

        QObject context;
        bool loopTurned = false;
        QTimer::singleShot(0, &context, [&] { loopTurned = true; });
        QElapsedTimer clock;
        clock.start();
        call(&context);
        QVERIFY(!waits || clock.elapsed() >= lateMs);
        QCOMPARE(loopTurned, mode == Mode::Loop);

        const RecordedCall received = fake->waitForCall(method);
        QCOMPARE(received.path, QString("/com/lumora/Manager/Bottles"));
        QCOMPARE(received.interface, QString("com.lumora.Manager.Bottles"));
        QTEST(received.signature, "signature");
        QTEST(received.arguments, "arguments");
        QCOMPARE(fake->release(method), waits ? 0 : 1);
        config().list();  // the released answer is here before this one
        QCoreApplication::processEvents();
    }

    void removeDllOverride() {
        config().removeDllOverride("b", "d");
        QCOMPARE(fake->waitForCall("updateDllOverride").arguments, (QJsonArray{"b", "d", "", true}));
    }

    void fireUpdateExternalProgram() {
        fake->setHeld("updateExternalProgram", "");
        config().fireUpdateExternalProgram("b", {{"id", "u"}});
        QCOMPARE(fake->waitForCall("updateExternalProgram").arguments, (QJsonArray{"b", "{\"id\":\"u\"}"}));
    }

    void timeOut() { QCOMPARE(config().timeout(), 3600000); }

    void readers_data() {
        QTest::addColumn<QString>("mishap");
        QTest::newRow("good") << "";
        QTest::newRow("error") << "error";
        QTest::newRow("malformed") << "malformed";
        QTest::newRow("empty reply") << "empty";
        QTest::newRow("vanishing") << "vanish";
        QTest::newRow("absent") << "absent";
    }
    void readers() {
        QFETCH(QString, mishap);
        const QStringList methods = {"list", "get", "getInstallingComponents", "getEmulators"};
        const QHash<QString, QString> warnings = {
            {"list", "Failed to fetch bottles list."},
            {"get", "Failed to fetch bottles config."},
            {"getInstallingComponents", "Failed to fetch bottles config."},
            {"getEmulators", "Failed to fetch emulators info."}};
        const QHash<QString, QString> texts = {
            {"list", "[\"one\",\"public/two\"]"},
            {"get", "{\"Path\":\"/p\"}"},
            {"getInstallingComponents", "{\"wine\":\"DOWNLOADING\"}"},
            {"getEmulators", "{\"installed\":{\"box64\":\"0.3\",\"box86\":\"0.2\"},\"using\":\"box64\"}"}};
        for (const QString& method : methods) {
            if (!fake->isRunning() && mishap != "absent")
                QVERIFY(fake->start());
            if (mishap.isEmpty())
                fake->setText(method, texts.value(method));
            else if (mishap == "error")
                fake->setError(method, "no");
            else if (mishap == "malformed")
                fake->setText(method, "{\"Path\":");
            else if (mishap == "absent")
                fake->kill();
            else
                fake->setAnswers(method, {{{mishap, true}}});

            const LogCapture log;
            QString seen;
            if (method == "list") {
                seen = config().list().join(',');
            } else if (method == "get") {
                seen = config().get("b").value("Path").toString();
            } else if (method == "getInstallingComponents") {
                seen = config().getInstallingComponents("b", "runner").value("wine").toString();
            } else {
                const EmulatorsInfo info = config().getEmulators("b");
                seen =
                    QStringList(info.installed.keys() + info.installed.values()).join(',') + info.usingName;
            }
            const QHash<QString, QString> good = {{"list", "one,public/two"},
                                                  {"get", "/p"},
                                                  {"getInstallingComponents", "DOWNLOADING"},
                                                  {"getEmulators", "box64,box86,0.3,0.2box64"}};
            QCOMPARE(seen, mishap.isEmpty() ? good.value(method) : QString());
            const bool failed = !mishap.isEmpty() && mishap != "malformed";
            QCOMPARE(log.contains(QtWarningMsg, warnings.value(method)), failed);
            fake->waitUntilGone(mishap == "vanish" ? 10000 : 0);
        }
    }

    void unknownBottle() {
        const LogCapture log;
        QCOMPARE(config().get("none"), QJsonObject());
        QCOMPARE(log.count("Failed to fetch bottles config."), 1);
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
        QTest::addColumn<QJsonObject>("answer");
        QTest::addColumn<QJsonObject>("result");
        QTest::addColumn<QString>("line");
        const QJsonObject no{{"ok", false}};
        QTest::newRow("made") << QJsonObject{{"text", "{\"ok\":true,\"path\":\"/p\"}"}}
                              << QJsonObject{{"ok", true}, {"path", "/p"}} << "create bottles result: ";
        QTest::newRow("late") << QJsonObject{{"text", "{\"ok\":true}"}, {"delay", 200}}
                              << QJsonObject{{"ok", true}} << "create bottles result: ";
        QTest::newRow("malformed") << QJsonObject{{"text", "{"}} << QJsonObject()
                                   << "create bottles result: ";
        QTest::newRow("refused") << QJsonObject{{"error", "full"}} << no << "reply is invalid";
        QTest::newRow("vanishing") << QJsonObject{{"vanish", true}} << no << "reply is invalid";
        QTest::newRow("vanishing later")
            << QJsonObject{{"vanish", true}, {"delay", 200}} << no << "reply is invalid";
    }
    void createBottles() {
        QFETCH(QJsonObject, answer);
        const LogCapture log;
        fake->setAnswers("createBottles", {answer});
        QSignalSpy created(&config(), &BottlesConfig::bottlesCreated);
        config().createBottles("new", "runner");
        QVERIFY(created.isEmpty());
        QTRY_COMPARE(created.count(), 1);
        QCOMPARE(created.at(0).at(0).toString(), QString("new"));
        QTEST(created.at(0).at(1).toJsonObject(), "result");
        QFETCH(QString, line);
        QVERIFY2(log.contains(line), qPrintable(log.text()));
        QTRY_VERIFY(
            config().findChildren<QDBusPendingCallWatcher*>().isEmpty());  // the watcher has been released
    }

    void createBottlesWithServiceAbsent() {
        const LogCapture log;
        fake->kill();
        QSignalSpy created(&config(), &BottlesConfig::bottlesCreated);
        config().createBottles("new", "runner");
        QTRY_COMPARE(created.count(), 1);
        QCOMPARE(created.at(0).at(1).toJsonObject(), (QJsonObject{{"ok", false}}));
    }

    void busSignals() {
        QSignalSpy done(&config(), &BottlesConfig::dependencySetupDone);
        QSignalSpy installed(&config(), &BottlesConfig::dependecyInstalled);
        QSignalSpy progress(&config(), &BottlesConfig::dependencyDownloadProgress);
        QSignalSpy description(&config(), &BottlesConfig::dependencySetupDescription);
        QSignalSpy step(&config(), &BottlesConfig::dependencySetupStepNotify);
        QSignalSpy gone(&config(), &BottlesConfig::bottles_deleted);
        QSignalSpy removed(&config(), &BottlesConfig::program_deleted);
        QSignalSpy added(&config(), &BottlesConfig::program_added);
        QSignalSpy updated(&config(), &BottlesConfig::program_updated);
        QSignalSpy exited(&config(), &BottlesConfig::program_exited);
        QSignalSpy waiting(&config(), &BottlesConfig::component_waiting_downloaded);
        QSignalSpy started(&config(), &BottlesConfig::component_setup_start);
        QSignalSpy finished(&config(), &BottlesConfig::component_setup_done);
        config().list();  // the subscriptions have reached the bus before this call came back

        const auto check = [this](QSignalSpy& spy, const char* name, const QString& signature,
                                  const QJsonArray& arguments) {
            QVERIFY(fake->emitSignal(name, signature, arguments));
            QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 5000);
            QCOMPARE(QJsonArray::fromVariantList(spy.at(0)), arguments);
        };
        check(progress, "dependencyDownloadProgress", "ssuus", {"b", "d", 10, 4294967295.0, "s"});
        check(description, "dependencySetupDescription", "sss", {"b", "d", "t"});
        check(step, "dependencySetupStepNotify", "ssii", {"b", "d", 1, 2});
        check(gone, "bottles_deleted", "s", {"b"});
        check(removed, "program_deleted", "ss", {"b", "u"});
        check(added, "program_added", "sss", {"b", "u", "{}"});
        check(updated, "program_updated", "sss", {"b", "u", "{}"});
        check(exited, "program_exited", "s", {"u"});
        check(waiting, "component_waiting_downloaded", "sss", {"b", "runner", "c"});
        check(started, "component_setup_start", "sss", {"b", "runner", "c"});
        check(finished, "component_setup_done", "ssss", {"b", "runner", "c", "{}"});
        check(done, "dependencySetupDone", "sss", {"b", "d", "{\"ok\":true}"});
        QCOMPARE(installed.count(), 1);
        QCOMPARE(installed.at(0).at(2).toJsonObject(), (QJsonObject{{"ok", true}}));

        QVERIFY(fake->emitSignal("dependencySetupDone", "sss", {"b", "d", "{torn"}));
        QTRY_COMPARE(installed.count(), 2);
        QCOMPARE(installed.at(1).at(2).toJsonObject(), QJsonObject());
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
        QTest::addColumn<QJsonObject>("answer");
        QTest::addColumn<QJsonArray>("links");
        QTest::addColumn<QString>("line");
        QTest::newRow("found") << QJsonObject{{"text", "[\"a.lnk\",{\"name\":\"b\"}]"}}
                               << QJsonArray{"a.lnk", QJsonObject{{"name", "b"}}} << "added lnks: ";
        QTest::newRow("malformed") << QJsonObject{{"text", "[\"a.lnk\""}} << QJsonArray()
                                   << "Failed to parse JSON: ";
        QTest::newRow("not an array") << QJsonObject{{"text", "{}"}} << QJsonArray() << "added lnks: ";
        QTest::newRow("refused") << QJsonObject{{"error", "no such bottle"}} << QJsonArray()
                                 << "DBUS call failed: no such bottle";
        QTest::newRow("vanishing") << QJsonObject{{"vanish", true}} << QJsonArray() << "DBUS call failed: ";
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
        QCOMPARE(config().getInstallingDependency("b"), QString("vcrun2019"));
        QCOMPARE(config().getInstallingDependency("b"), QString());
        QVERIFY2(log.contains(QtDebugMsg, "true::::vcrun2019"), qPrintable(log.text()));
        QVERIFY2(log.contains(QtDebugMsg, "false::busy::"), qPrintable(log.text()));
    }

    void resultsForCallers() {
        fake->setText("checkPublicBottles", "public/office");
        QCOMPARE(config().checkPublicBottles("{}").text, QString("public/office"));
        fake->setError("checkPublicBottles", "no table");
        QCOMPARE(config().checkPublicBottles("{}").errorMessage, QString("no table"));
        fake->setAnswers("cancelInstallingDependency", {{{"empty", true}}});
        QVERIFY(config().cancelInstallingDependency("b").ok);

        QObject context;
        QStringList seen;
        const auto handler = [&](const BusResult& result) {
            seen.append(result.ok ? result.object().keys().join(',') : result.errorMessage);
        };
        fake->setAnswers("listDllOverrides",
                         {{{"text", "{\"a\":\"native\",\"b\":\"\"}"}}, {{"error", "gone"}}});
        config().listDllOverrides("b", &context, handler);
        QTRY_COMPARE(seen, QStringList{"a,b"});
        config().listDllOverrides("b", &context, handler);
        QTRY_COMPARE(seen, (QStringList{"a,b", "gone"}));
    }

    void removeExternalProgram() {
        const TestSupport::TestHome home;
        const QString cache = home.write("bottle/fileinfo.cache", "{\"one\":{\"exename\":\"a\"},\"two\":{}}");
        fake->setBottle("b", {{"Path", home.path() + "/bottle"}});
        config().removeExternalProgram("b", "one");
        QCOMPARE(TestSupport::readFile(cache), QByteArray("{\"two\":{}}"));
        QCOMPARE(fake->calls("removeExternalProgram").value(0).arguments, (QJsonArray{"b", "one"}));

        // Without a directory nothing is written anywhere, but the service is still asked.
        const LogCapture log;
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

private:
    TestSupport::PrivateBus bus;
    std::unique_ptr<FakeBottleService> fake;
};

QTEST_GUILESS_MAIN(BottlesConfigTest)
#include "BottlesConfigTest.moc"
