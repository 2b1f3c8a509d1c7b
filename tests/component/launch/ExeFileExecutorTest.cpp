#include "launch/run/ExeFileExecutor.h"

#include <QtTest>

#include "LaunchFixture.h"
#include "backend/BottlesConfig.h"
#include "backend/SessionBus.h"
#include "launch/bottle/PrivateBottleName.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using namespace TestSupport;

namespace {

const char Staging[] = "lumora-wine-staging";
const char Stable[] = "lumora-wine10-stable";

const char Gecko[] =
    "err:mshtml:create_document_object Failed to init Gecko, returning CLASS_E_CLASSNOTAVAILABLE\n";
const char Font[] = "warn:file:x L\"\\\\??\\\\C:\\\\windows\\\\Fonts\\\\simsun.ttc\" not found\n";

// clang-format off
/// What the rows call the longer messages, and what of that goes together.
const QStringList Words{
    "M1 Parsing wine logs and fix application", "parse",
    "S1 Initializing Envrironment|", "",
    "S1 Launching|M2 Launching a.exe", "launch",
    "M1 Seems application has finished, exit code: ", "ended ",
    ", and app not been launched", " unseen",
    "M1 No any fixing applied, launch failed|failed 0 0", "lost",
    "M1 No any fixing applied, but seems app not crashed|succeeded", "won",
    "window|parse|ended 0|won", "ran",
    "M1 Try to install components:|M1 gecko", "gecko",
    "M1 This application missing fonts: ", "fonts ",
    "fixing|M2 Fix: install components gecko|S1 Fixing|S2 Fixing ... 0%|M2 Setup ", "setup ",
    "M2 App run failed, try to using lumora-wine-staging and relaunch|S1 Fixing", "switch",
    "fixing|switch|M1 Switch runner success, relaunch program...", "switched",
    "M1 Application is not running as expected, try to using lumora-wine-staging and relaunch", "staging?",
    "M1 Choose wine version: lumora-wine10-stable", "new",
    "M1 lumora-wine10-stable is not installing, try to download now", "download",
    "M0 Download failed, fallback to lumora-wine10-stable", "fallback",
    "M2 Downloading lumora-wine10-stable: 33%|M1 lumora-wine10-stable has downloaded", "downloaded",
    "M2 Downloading lumora-wine10-stable: 33%|fallback", "half|fallback",
    "M2 Start initializing envrionment, please wait...", "create",
    "M2 The first run needs an environment, which takes about half a minute: ", "first ",
    "M1 Try to fix application with those components:|M1 - gecko", "prepared",
};
// clang-format on

}  // namespace

/// One launch from the file to its result, with the real launch script and a Wine and a service that do as
/// they are told.
class ExeFileExecutorTest : public QObject, private LaunchFixture {
    Q_OBJECT

    std::unique_ptr<ExeFileExecutor> m_executor;
    QString m_file;
    QStringList m_told;
    QString m_last;     ///< line, without exception
    int m_repairs = 0;  ///< offers that are taken
    int m_results = 0;

    void note(const QString& line) {
        m_last = line;
        // Each failure's reason is its last line; which one it is is tested elsewhere.
        if (m_executor && line == "M1 " + m_executor->diagnosis().reason)
            return;
        // Ticks, and the log's lines, are told elsewhere.
        static const QRegularExpression noise(
            "^M0 (there is no bottle named|The background service|warn|err)| seconds|wine error logs:");
        if (!noise.match(line).hasMatch())
            m_told << line;
    }

    QString told() const {
        QString text = m_told.join('|');
        for (int i = 0; i < Words.size(); i += 2)
            text.replace(Words[i], Words[i + 1]);
        return text;
    }

    void create(int repairs = 0) {
        m_executor = std::make_unique<ExeFileExecutor>(m_file, nullptr);
        m_told.clear();
        m_repairs = repairs;
        m_results = 0;
        const auto* launch = m_executor.get();
        const auto line = [this](const char* kind) {
            return [this, kind](const QString& text, MsgType type) {
                note(kind + QString::number(type) + ' ' + text);
                react(text);
            };
        };
        connect(launch, &ExeFileExecutor::emitStep, this, line("S"));
        connect(launch, &ExeFileExecutor::emitMsg, this, line("M"));
        connect(launch, &ExeFileExecutor::windowPopuped, this, [this] {
            note("window");
            m_standIn.write("close", "");
        });
        connect(launch, &ExeFileExecutor::Fixing, this, [this] { note("fixing"); });
        connect(launch, &ExeFileExecutor::stopped, this, [this] {
            note("stopped");
            ++m_results;
        });
        connect(launch, &ExeFileExecutor::runSuccessed, this, [this] {
            note("succeeded");
            ++m_results;
        });
        connect(launch, &ExeFileExecutor::runFailed, this, [this](bool canWeFix, bool isSuccessed) {
            if (m_last != "M1 " + m_executor->diagnosis().reason)
                note("no reason");
            note(QString("failed %1 %2").arg(canWeFix).arg(isSuccessed));
            if (canWeFix && m_repairs-- > 0)
                QMetaObject::invokeMethod(m_executor.get(), &ExeFileExecutor::applyFix, Qt::QueuedConnection);
            else
                ++m_results;
        });
    }

    /// The service's side of repairs: first what concerns others, then the answer, twice.
    void react(const QString& text) {
        auto* service = BottlesConfig::instance();
        const QString bottle = m_bottle;
        if (text == "Fix: install components gecko") {
            QTimer::singleShot(0, service, [service, bottle] {
                Q_EMIT service->dependecyInstalled("other", "gecko", {{"ok", true}});
                Q_EMIT service->dependecyInstalled(bottle, "jet40", {{"ok", true}});
                for (int i = 0; i < 2; ++i)
                    Q_EMIT service->dependecyInstalled(bottle, "gecko", {{"ok", true}});
            });
        } else if (text.startsWith("App run failed")) {
            QTimer::singleShot(0, service, [service, bottle] {
                Q_EMIT service->component_setup_done("other", "runner", Staging, "");
                Q_EMIT service->component_setup_done(bottle, "dxvk", Staging, "");
                Q_EMIT service->component_setup_done(bottle, "runner", Stable, "");
                for (int i = 0; i < 2; ++i)
                    Q_EMIT service->component_setup_done(bottle, "runner", Staging, "");
            });
        }
    }

    void tellPreparing(const char* runner, int percent) {
        QVERIFY(m_service->emitSignal("/com/lumora/Manager/Templates", "com.lumora.Manager.Templates",
                                      "preparing", "si", {runner, percent}));
    }

    bool use32BitFile() {
        m_file += "32.exe";
        QFile::remove(m_file);
        return QFile::copy(QString(TEST_BINARY_DIR) + "/tests/programs/x86/quit.exe", m_file);
    }

    /// Whose Wine runs nothing else.
    void makeBottleOf64Bit() {
        makeBottle(privateBottleNameOf(m_file));
        QVERIFY(QDir().mkpath(m_standIn.directory() + "/../lib/wine/x86_64-windows"));
        m_standIn.write("../lib/wine/x86_64-windows/ntdll.dll", "");
    }

private Q_SLOTS:
    void init() {
        QVERIFY(startService());
        m_file = m_home.write("files/a.exe", "MZ");
        ComponentManager::instance()->runnerInstalled = QStringList{Stable};
    }
    void cleanup() {
        m_executor.reset();
        stopService();
    }

    void launches_data() {
        // how: "staging" is known; "public"; "stored"; "fixup"
        const Table<QString, QStringList, QString, QString> row("program", "logs", "how", "expected");
        const char dies[] = "(exit 1)", second[] = "[ $RUN != 1 ] && show || (exit 1)";
        row("window", "show", {}, "", "launch|ran");
        row("no window", dies, {}, "", "launch|parse|ended 1 unseen|lost");
        row("lets go", "touch alive; { sleep 0.3; show; rm -f alive; } & exec true", {}, "", "launch|ran");
        row("outlives its window", "show; wait_for close", {}, "", "launch|ran");
        row("repair not taken", dies, {Gecko}, "ask", "launch|parse|gecko|ended 1 unseen|failed 1 0");
        row("repair helps", second, {Gecko}, "",
            "launch|parse|gecko|ended 1 unseen|failed 1 0|setup Success|launch|ran");
        row("repair does not help", dies, {Gecko, Gecko}, "staging",
            "launch|parse|gecko|ended 1 unseen|failed 1 0|setup Success|launch|parse|ended 1 unseen|lost");
        row("repair of one that stays", "[ $RUN = 2 ] || { show; wait_for close; }", {Gecko}, "",
            "launch|window|parse|gecko|ended 0|failed 1 0|setup Success|launch|parse|ended 0 unseen|lost");
        row("repair uncovers the next", second, {Gecko, Font}, "",
            "launch|parse|gecko|ended 1 unseen|failed 1 0|setup Success|launch|window|parse|"
            "fonts simsun.ttc|ended 0|fixing|launch|ran");
        row("setup failed", "show", {"err:setupapi:x\n"}, "", "launch|window|parse|ended 0|lost");
        row("staging helps", second, {}, "staging",
            "launch|parse|ended 1 unseen|staging?|failed 1 0|switched|launch|ran");
        row("staging does not help", dies, {}, "staging",
            "launch|parse|ended 1 unseen|staging?|failed 1 0|switched|launch|parse|ended 1 unseen|lost");
        row("stored", dies, {}, "stored staging", "launch|launch|parse|ended 1 unseen|failed 0 0");
        row("public", dies, {Gecko}, "public staging", "launch|ended 1 unseen|lost");
        row("fixup", "show", {Gecko}, "fixup", "prepared|setup Success|launch|ran");
        row("killed", "(exit 137)", {Gecko}, "", "launch|stopped");
        row("quit in the library", "touch alive; wait_for close; rm alive", {Gecko}, "quit",
            "launch|stopped");
    }
    void launches() {
        QFETCH(QString, program);
        QFETCH(QStringList, logs);
        QFETCH(QString, how);
        const QString name = how.contains("public") ? "public/x" : privateBottleNameOf(m_file);
        makeBottle(name, {{"Runner", Stable}});
        m_standIn.write("program", program.toUtf8());
        for (int i = 0; i < logs.size(); ++i)
            m_standIn.write(QString("log%1").arg(i + 1), logs[i].toUtf8());
        if (how.contains("staging"))
            ComponentManager::instance()->runnerSupported = QStringList{Staging};
        create(how == "ask" ? 0 : 9);
        if (how.contains("stored") || how.contains("fixup")) {
            m_executor->setFirstRun(0);
            m_executor->setAppName("a.exe");
        }
        if (how.contains("fixup")) {
            m_executor->prepareFix(name, "", {"gecko"});
            m_executor->applyFix();
        } else if (how.contains("stored")) {
            m_executor->launchProgram(name, "");
        } else {
            m_executor->start();
        }
        if (how == "quit") {
            m_service->waitForCall("get");
            BottlesConfig::instance()->killProgram(name, "the file's entry");
            m_standIn.write("close", "");
        }
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        QTEST(told(), "expected");
        // A result is the last word, and links are looked for before each, as before each offer.
        m_executor->onExeFinished(0);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(m_results, 1);
        const bool isFinal = told().contains("lost") || told().endsWith("ran") || told().endsWith("won");
        const int offers = told().count("failed ");
        QCOMPARE(m_service->calls("scanApplicationLinks").size(), offers + int(isFinal));
        QCOMPARE(m_service->calls("setRunner").size(), told().count("switched"));
        // The bottle's record is fetched once, and once more after each change of the bottle.
        const int changes = told().count("setup Success") + told().count("switched");
        QCOMPARE(m_service->calls("get").size(), how.contains("fixup") ? 1 : 1 + changes);
    }

    void resultWaitsForTheLinks() {
        makeBottle(privateBottleNameOf(m_file));
        m_standIn.write("program", "show");
        m_service->setHeld("scanApplicationLinks", "[]");
        create();
        m_executor->start();
        const RecordedCall call = m_service->waitForCall("scanApplicationLinks", 1, LaunchMs);
        QCOMPARE(call.arguments[0].toString(), m_bottle);
        QVERIFY(told().endsWith("ended 0"));
        m_executor->applyFix();  // in vain
        m_service->release();
        QTRY_COMPARE(m_results, 1);
        QVERIFY(told().endsWith("ran"));
    }

    void runnerAndBottle_data() {
        // install: the answer
        // signal: success of the signal; -1 for none
        const Table<QString, int, QString, QString> row("install", "signal", "creation", "expected");
        row("installed", "{\"ok\":true}", 1, "{\"ok\":true}", "downloaded");
        row("slower than the bus", "{\"ok\":true} late", 1, "{\"ok\":true}", "downloaded");
        row("failed", "{\"ok\":true}", 0, "no json", "half|fallback");
        row("answered", "{\"ok\":true}", -1, "", "M1 lumora-wine10-stable has downloaded");
        row("refused", "{\"ok\":false}", -1, "error", "fallback");
        row("killed", "kill", -1, "", "fallback");
        row("vanishes", "vanish", -1, "", "fallback");
        row("creation dies", "{\"ok\":true}", 1, "vanish", "downloaded");
    }
    void runnerAndBottle() {
        QFETCH(QString, install);
        QFETCH(int, signal);
        QFETCH(QString, creation);
        const auto answer = [this](const char* method, const QString& text) {
            if (text == "vanish")
                m_service->setVanish(method);
            else if (text == "error")
                m_service->setError(method, "no");
            else
                m_service->setText(method, text);
        };
        answer("Components.install", install);
        if (signal >= 0)
            m_service->setHeld("Components.install", install);
        answer("createBottles", creation);
        m_bottle = privateBottleNameOf(m_file);
        m_standIn = StandInBottle();
        auto* manager = ComponentManager::instance();
        manager->runnerInstalled.clear();
        const int limit = manager->timeout();
        const bool isLate = install.endsWith("late");
        if (isLate)
            manager->setTimeout(100);
        create();
        m_executor->start();
        if (isLate || install == "kill")
            m_service->waitForCall("install");
        if (isLate) {
            bool hasTimedOut = false;  // and so has the executor's call, which came before
            manager->install("runner", Stable, this,
                             [&](const BusResult& late) { hasTimedOut = late.timedOut; });
            QTRY_VERIFY(hasTimedOut);
            manager->setTimeout(limit);
        }
        if (install == "kill")
            m_service->kill();
        if (signal >= 0) {
            QCOMPARE(m_service->waitForCall("install").arguments, QJsonArray({"runner", Stable}));
            Q_EMIT manager->updateProgress("dxvk", "d", 1, 2, "");
            Q_EMIT manager->installed(1, "runner", Staging, "");
            Q_EMIT manager->updateProgress("runner", Stable, 1, 3, "");
            Q_EMIT manager->installed(signal, "runner", Stable, "");
            Q_EMIT manager->installed(signal, "runner", Stable, "");
            Q_EMIT BottlesConfig::instance()->bottlesCreated("other", {});
            m_service->release("install");
        }
        // A bottle that was not made makes the script say so; nothing else has an end here.
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        QString line = told();
        line.replace("ended 0 ", "ended 67 ");  // the monitor's script may be the first to say it
        QFETCH(QString, expected);
        QCOMPARE(line, "new|download|" + expected + "|create|launch|parse|ended 67 unseen|lost");
        QCOMPARE(m_results, 1);
    }

    void firstTemplate() {
        ComponentManager::instance()->runnerInstalled = QStringList{Stable};
        m_service->setHeld("createBottles", "{\"ok\":true}");
        m_bottle = privateBottleNameOf(m_file);
        m_standIn = StandInBottle();
        create();
        m_executor->start();
        m_service->waitForCall("createBottles");
        tellPreparing("ge-proton10", 7);
        tellPreparing(Stable, 41);
        QTRY_VERIFY(told().endsWith("first 41%"));
        tellPreparing(Stable, 100);
        m_service->release();
        tellPreparing(Stable, 1);  // of somebody else's wait
        QTRY_VERIFY_WITH_TIMEOUT(m_results > 0, LaunchMs);
        QCOMPARE(m_told.filter("half a minute").size(), 2);
    }

    /// The service dies, or the executor, while something is awaited.
    void interrupted_data() {
        // call: that is under way
        // expected: of the service's death; else it is the executor that dies
        const Table<QString, QString, QString> row("call", "log", "expected");
        row("components", "installDependency", Gecko,
            "M0 The bottle service has ended unexpectedly.|M2 Setup Failed|launch|parse|ended 1 unseen|lost");
        row("switch", "setRunner", "", "fixing|switch|first 41%|lost");
        row("links", "scanApplicationLinks", "", "ended 1 unseen|lost");
        row("delete: choosing", "checkPublicBottles", "", "");
        row("delete: running", "get", "", "");
        row("delete: links", "scanApplicationLinks", "", "");
        row("delete: switch", "setRunner", "", "");
        row("delete: components", "installDependency", Gecko, "");
    }
    void interrupted() {
        QFETCH(QString, call);
        QFETCH(QString, log);
        QFETCH(QString, expected);
        makeBottle(privateBottleNameOf(m_file));
        m_standIn.write("program", "(exit 1)");
        m_standIn.write("log1", log.toUtf8());
        if (call == "setRunner")
            ComponentManager::instance()->runnerSupported = QStringList{Staging};
        if (call != "get")
            m_service->setHeld(call, "");
        create(1);
        m_bottle = "none of the answers";  // of react()
        if (call != "checkPublicBottles")
            m_executor->start();
        QVERIFY(!m_service->waitForCall(call, 1, LaunchMs).method.isEmpty());
        if (!expected.isEmpty()) {
            tellPreparing(Staging, 41);
            m_service->kill();
            QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
            QVERIFY2(told().endsWith(expected), qPrintable(told()));
            QCOMPARE(m_results, 1);
            return;
        }
        m_executor.reset();
        m_service->release();
        Q_EMIT BottlesConfig::instance()->component_setup_done(m_bottle, "runner", Staging, "");
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(m_results, 0);
    }

    /// Programs run in the bottle: they are ended, and the switch is asked for again, when the user says so.
    void switchWaitsForPrograms() {
        makeBottle(privateBottleNameOf(m_file));
        const QString bottle = std::exchange(m_bottle, "none of the answers");  // of react()
        m_standIn.write("program", "(exit 1)");
        ComponentManager::instance()->runnerSupported = QStringList{Staging};
        m_service->setAnswers(
            "setRunner",
            {{{"error", "Programs run."}, {"errorName", "com.lumora.Error.Busy"}}, {{"text", ""}}});
        create(1);
        QSignalSpy asked(m_executor.get(), &ExeFileExecutor::programsRunning);
        m_executor->start();
        for (const char* result : {R"({"busy":["Harbour"]})", R"({"ok":true})"}) {
            QVERIFY(!m_service->waitForCall("setRunner", 1 + asked.size(), LaunchMs).method.isEmpty());
            m_service->emitSignal("component_setup_done", "ssss", {bottle, "runner", Staging, result});
            QTRY_COMPARE(asked.size(), 1);
            m_executor->answerProgramsRunning(true);  // the second time in vain
        }
        QTRY_VERIFY2(told().contains("switched"), qPrintable(told()));
        QCOMPARE(asked[0][0].toStringList(), QStringList("Harbour"));
        QCOMPARE(m_service->calls("killWineServer").size(), 1);
    }

    /// Whatever is under way: after a cancel only the cancel itself leaves the process.
    void cancelled_data() {
        // call: that is under way
        const Table<QString, bool, QString, QString> row("call", "isHeld", "log", "sent");
        row("runner", "install", true, "", "cancelInstall");
        row("bottle", "createBottles", true, "", "");
        row("running", "get", false, "", "");
        row("links", "scanApplicationLinks", true, "", "");
        row("components, not answered", "installDependency", true, Gecko, "cancelDependency");
        row("components, downloading", "installDependency", false, Gecko, "cancelDependency");
        row("asked", "installDependency", false, Gecko, "");
        row("renewal", "renewBottle", true, "", "cancelRenewal");
        row("switch, not answered", "setRunner", true, "", "cancelInstallingComponent");
        row("switch, downloading", "setRunner", false, "", "cancelInstallingComponent");
    }
    void cancelled() {
        QFETCH(QString, call);
        QFETCH(bool, isHeld);
        QFETCH(QString, log);
        QFETCH(QString, sent);
        const bool isNew = call == "install" || call == "createBottles";
        makeBottle(privateBottleNameOf(m_file));
        const QString bottle = std::exchange(m_bottle, "none of the answers");  // of react()
        if (isNew)
            m_service->setJson("Bottles.list", QJsonArray());
        if (call == "install")
            ComponentManager::instance()->runnerInstalled.clear();
        if (call == "setRunner")
            ComponentManager::instance()->runnerSupported = QStringList{Staging};
        m_standIn.write("program", call == "get" ? "touch alive; wait_for close" : "(exit 1)");
        m_standIn.write("log1", log.toUtf8());
        if (isHeld)
            m_service->setHeld(call, "{\"ok\":false}");
        if (call == "renewBottle")
            m_service->setText("damage", "{\"count\":99}");
        m_service->setError("cancelDependency", "no");
        create(1);
        m_executor->start();
        QVERIFY(!m_service->waitForCall(call, 1, LaunchMs).method.isEmpty());
        if (call == "get")
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_standIn.directory() + "/alive"), LaunchMs);
        if (QTest::currentDataTag() == QString("asked")) {
            QSignalSpy asked(m_executor.get(), &ExeFileExecutor::programsRunning);
            m_service->emitSignal("dependencySetupDone", "sss", {bottle, "gecko", "{\"busy\":[\"x\"]}"});
            QTRY_COMPARE(asked.size(), 1);
        }

        LogCapture errors;
        m_service->clearCalls();
        const QString before = told();
        m_executor->cancelRepair();
        m_service->release();
        m_executor->applyFix();
        m_executor->answerProgramsRunning(true);
        m_executor->onExeFinished(1);
        const QString ok = "{\"ok\":true}";
        m_service->emitSignal("dependencySetupDone", "sss", {bottle, "gecko", ok});
        m_service->emitSignal("component_setup_done", "ssss", {bottle, "runner", Staging, ok});
        QSignalSpy last(BottlesConfig::instance(), &BottlesConfig::program_exited);
        m_service->emitSignal("program_exited", "s", {"x"});
        QTRY_COMPARE(last.size(), 1);
        BottlesConfig::instance()->list();
        QStringList calls;
        for (const RecordedCall& each : m_service->calls())
            calls += each.method;
        QCOMPARE(calls.join(' '), (sent + " list").trimmed());
        QCOMPARE(errors.contains("Failed to cancel installing dependencies: no"), sent == "cancelDependency");
        QCOMPARE(told(), before);  // a launch would be told at once
    }

    void unreadableFile() {
        LogCapture log;
        m_file = m_home.path() + "/none.exe";
        create();
        m_executor->start();
        QVERIFY(log.contains(m_file + " is not readable, exit..."));
        QVERIFY(m_told.isEmpty() && !m_executor->isInstaller());
        m_file.clear();
        create();
        QCOMPARE(m_executor->bottlesName(), QString());
        QVERIFY(log.contains("exe path is empty, donothing"));
    }

    /// Repairs that are neither components nor the staging runner.
    void otherRepairs_data() {
        const TestSupport::Table<QString, QString, QString, QString, QString> row(
            "method", "answer", "signal", "expected", "sent");
        row("new bottle", "Bottles.list", "[]", "", "M1 Choose wine version: wine-11.22|M2 Start",
            "createBottles wine-11.22");
        row("runner", "", "", "{\"ok\":true}", "relaunch program...|launch", "install setRunner");
        row("runner is not had", "install", "{\"ok\":false,\"error\":\"no net\"}", "",
            "M1 wine-11.22 could not be downloaded: no net|failed 1 0", "install");
        row("runner, not now", "", "", R"({"ok":false,"busy":["Harbour"]})",
            "asked Harbour|M1 a.exe32.exe is a 32-bit program, and this Wine runs only 64-bit ones. Repair "
            "gets wine-11.22, which runs both.|failed 1 0",
            "install setRunner");
        row("runner, busy", "", "", "{\"ok\":false,\"busy\":[\"Harbour\"]}",
            "asked Harbour|M2 Switching the container to wine-11.22",
            "install setRunner killWineServer setRunner");
        row("renewal", "renewBottle", "{\"ok\":true,\"mended\":1}", "",
            "M1 Files of Windows renewed: 1|launch|ran", "renewBottle");
        row("renewal fails", "renewBottle", "{\"ok\":false,\"error\":\"no disk\"}", "",
            "M1 The container could not be renewed: no disk|failed 1 0", "renewBottle");
        row("renewal, busy", "renewBottle", "{\"ok\":false,\"busy\":[\"Harbour\"]}", "", "asked Harbour",
            "renewBottle killWineServer renewBottle");
    }
    void otherRepairs() {
        QFETCH(QString, method);
        QFETCH(QString, answer);
        QFETCH(QString, signal);
        QFETCH(QString, expected);
        if (method != "renewBottle" && !use32BitFile())
            QSKIP("the Windows compiler is not on this machine");
        makeBottleOf64Bit();
        m_standIn.write("program", "[ $RUN != 1 ] && show || (exit 1)");
        const QString place = method == "Bottles.list" ? "installed" : "supported";
        m_service->setJson("runnersFor32Bit", QJsonObject{{place, QJsonArray{"wine-11.22"}}});
        if (method == "renewBottle")
            m_service->setText("damage", "{\"count\":99}");
        if (!method.isEmpty())
            m_service->setText(method, answer);
        create(1);
        QString all;
        connect(m_executor.get(), &ExeFileExecutor::emitMsg, this,
                [&](const QString& text, MsgType type) { all += QString("|M%1 %2").arg(type).arg(text); });
        connect(m_executor.get(), &ExeFileExecutor::runFailed, this,
                [&](bool canWeFix) { all += QString("|failed %1 0").arg(canWeFix); });
        connect(m_executor.get(), &ExeFileExecutor::programsRunning, this, [&](const QStringList& names) {
            all += "|asked " + names.join(' ');
            m_executor->answerProgramsRunning(!expected.contains("failed"));
        });
        m_executor->start();
        if (!signal.isEmpty()) {
            m_service->waitForCall("setRunner", 1, LaunchMs);
            m_service->emitSignal("component_setup_done", "ssss", {m_bottle, "runner", "wine-11.22", signal});
        }
        QTRY_VERIFY2_WITH_TIMEOUT(all.contains(expected) || told().contains(expected), qPrintable(all),
                                  LaunchMs);
        QFETCH(QString, sent);
        const auto calls = [this] {
            QStringList methods;
            for (const RecordedCall& call : m_service->calls()) {
                if (call.method == "createBottles")
                    methods += "createBottles " + call.arguments[1].toString();
                else if (QStringList{"install", "setRunner", "killWineServer", "renewBottle"}.contains(
                             call.method))
                    methods += call.method;
            }
            return methods.join(' ');
        };
        QTRY_VERIFY2(calls().startsWith(sent), qPrintable(calls()));
    }

    /// What keeps the program from being started is the last word before the failure, and no repair helps.
    void launchError_data() {
        const TestSupport::Table<QString, QStringList, int, QString> row("file", "creations", "requests",
                                                                         "expected");
        row("32 bits", "32.exe", {}, 0,
            "a.exe32.exe is a 32-bit program, and this Wine runs only 64-bit ones. These commands add 32-bit "
            "Wine on Debian:\nsudo dpkg --add-architecture i386 && sudo apt-get update\n"
            "sudo apt-get install wine32:i386");
        row("no Wine", "", {}, 0, "The Wine of its bottle is missing: /");
        row("log of an older start", "old", {}, 0, "There is no bottle named");
        row("disk full", "new",
            {R"({"ok":false,"reasons":[{"code":"no-room","arguments":["x"]}],"error":"?"})"}, 1,
            "There is not enough room on the disk for x.");
        row("service dies", "new", {""}, 2, "The background service that makes containers does not answer.");
        row("service dies once", "new", {"", R"({"ok":true})"}, 2, "There is no bottle named");
    }
    void launchError() {
        QFETCH(QString, file);
        QFETCH(QStringList, creations);
        QFETCH(QString, expected);
        if (file == "32.exe" && !use32BitFile())
            QSKIP("the Windows compiler is not on this machine");
        makeBottleOf64Bit();
        if (file.isEmpty())
            QVERIFY(QFile::remove(m_standIn.directory() + "/wine"));
        if (file == "old" || file == "new") {
            QVERIFY(QDir(m_standIn.directory()).mkdir("logs"));
            m_standIn.write("logs/wine-a.exe.txt", Gecko);
            QVERIFY(QFile::remove(m_standIn.directory() + "/launch.json"));
        }
        if (file == "new")
            m_service->setJson("Bottles.list", QJsonArray());
        QVector<QJsonObject> answers;
        for (const QString& creation : creations)
            answers += QJsonObject{{creation.isEmpty() ? "error" : "text", creation}};
        m_service->setAnswers("createBottles", answers);
        ComponentManager::instance()->runnerSupported = QStringList{Staging};
        create();
        m_executor->start();
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        QCOMPARE(m_told.last(), QString("failed 0 0"));
        const QString reason = m_executor->diagnosis().reason;
        QVERIFY2(reason.startsWith(expected) && !told().contains("gecko"), qPrintable(reason));
        QTEST(m_service->calls("createBottles").size(), "requests");
    }

    // Last: there is no bus afterwards. It goes while a bottle is made, and the next launch misses it at
    // once.
    void theBusGoes() {
        m_service->setHeld("createBottles", "{\"ok\":true}");
        create();
        m_executor->start();
        m_service->waitForCall("createBottles");
        m_bus.stop();
        QTRY_VERIFY_WITH_TIMEOUT(m_results > 0, LaunchMs);
        QCOMPARE(m_told.last(), QString("failed 0 0"));
        QCOMPARE(m_executor->diagnosis().reason, SessionBus::missingText());
        create();
        m_executor->start();
        QCOMPARE(m_told.mid(1), QStringList{"failed 0 0"});
        QCOMPARE(m_executor->diagnosis().reason, SessionBus::missingText());
    }
};

QTEST_MAIN(ExeFileExecutorTest)
#include "ExeFileExecutorTest.moc"
