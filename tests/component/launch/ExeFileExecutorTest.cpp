#include "launch/ExeFileExecutor.h"

#include <QtTest>
#include <memory>

#include "backend/BottlesConfig.h"
#include "backend/ComponentManager.h"
#include "launch/PrivateBottleName.h"
#include "support/FakeBottleService.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

constexpr int LaunchMs = 30000;
const char Staging[] = "lumora-wine-staging";
const char Stable[] = "lumora-wine10-stable";

/// Stands where a bottle's Wine stands. What it is to do as program of the n-th launch is in the file
/// "program", and what it says in "log<n>"; the files "alive" and "window" are what the window tool sees.
const char StandIn[] = R"sh(#!/bin/sh
cd "$WINEPREFIX" || exit
count() { cat "$1" 2>/dev/null | wc -l; }
# A bound, so that nothing stays behind.
wait_for() { n=0; until [ -e "$1" ] || [ $n -gt 400 ]; do n=$((n + 1)); sleep 0.05; done; }
show() { touch alive window; wait_for close; rm -f window close; }
case $1 in
taskkill.exe) ;;
*enum_process_window.exe)
    echo >> watches
    n=0; until [ "$(count runs)" -ge "$(count watches)" ] || [ $n -gt 400 ]; do n=$((n + 1)); sleep 0.05; done
    n=0
    while [ $n -lt 400 ]; do
        n=$((n + 1))
        echo "::process list"; [ -e alive ] && echo "9 - x - a.exe"
        echo "::window list"; [ -e window ] && echo "9 - Title"
        echo "::end"; sleep 0.05
    done ;;
*)
    rm -f alive window close; echo >> runs; RUN=$(count runs)
    [ -e "log$RUN" ] && cat "log$RUN"
    . ./program; code=$?; rm -f alive; exit $code ;;
esac
)sh";

const char Gecko[] =
    "err:mshtml:create_document_object Failed to init Gecko, returning CLASS_E_CLASSNOTAVAILABLE\n";
const char Crash[] = "trace:seh:start_debugger Starting debugger L\"x\"\n";
const char Font[] = "warn:file:x L\"\\\\??\\\\C:\\\\windows\\\\Fonts\\\\simsun.ttc\" not found\n";

/// What the rows call the longer messages.
const QVector<QPair<QString, QString>> Words{
    {"M1 Parsing wine logs and fix application", "parse"},
    {"S1 Launching|M2 Launching a.exe", "launch"},
    {"M1 Seems application has finished, exit code: ", "ended "},
    {", and app not been launched", " without window"},
    {"M1 No any fixing applied, launch failed", "nothing fixed"},
    {"M1 No any fixing applied, but seems app not crashed", "not crashed"},
    {"M2 Fix: install components gecko|S1 Fixing|S2 Fixing ... 0%", "install gecko"},
    {"M1 Try to install components:|M1 gecko", "needs gecko"},
    {"M1 This application missing fonts: ", "fonts "},
    {"M2 App run failed, try to using lumora-wine-staging and relaunch|S1 Fixing", "switch"},
    {"M1 Switch runner success, relaunch program...", "switched"},
    {"M1 Application is not running as expected, try to using lumora-wine-staging and relaunch",
     "try staging"},
    {"S1 Initializing Envrironment|M1 Choose wine version: lumora-wine10-stable", "new"},
    {"M1 lumora-wine10-stable is not installing, try to download now", "download"},
    {"M0 Download failed, fallback to lumora-wine10-stable", "fallback"},
    {"M1 lumora-wine10-stable has downloaded", "downloaded"},
    {"M2 Start initializing envrionment, please wait...", "create"},
};

}  // namespace

/// One launch from the file to its result, with the real launch script and a Wine and a service that do as
/// they are told.
class ExeFileExecutorTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    PrivateBus m_bus;
    std::unique_ptr<FakeBottleService> m_service;
    std::unique_ptr<ExeFileExecutor> m_executor;
    QString m_file;
    QString m_bottle;
    QString m_directory;  ///< of the bottle
    QStringList m_told;
    int m_repairs = 0;  ///< offers that are taken
    int m_results = 0;

    void writeBottle(const QString& name, const QByteArray& content) const {
        m_home.write(QDir(m_home.path()).relativeFilePath(m_directory + "/" + name), content);
    }

    void makeBottle(const QString& name, const QString& runner = Stable) {
        m_bottle = name;
        m_directory = m_home.data() + "/lumora-wine-bottles/bottles/" + name;
        QDir(m_directory).removeRecursively();
        QDir().mkpath(m_directory + "/drive_c/windows/Fonts");
        writeBottle("wine", StandIn);
        QFile::setPermissions(m_directory + "/wine", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        writeBottle("launch.json", QJsonDocument(QJsonObject{{"version", 1},
                                                             {"source", QJsonObject()},
                                                             {"wine", m_directory + "/wine"}})
                                       .toJson());
        m_service->setJson("Bottles.list", QJsonArray{name});
        m_service->setBottle(name, {{"Path", m_directory}, {"Runner", runner}});
        m_service->setText("scanApplicationLinks", "[]");
    }

    void note(const QString& line) {
        // Ticks, and the log's lines, are told elsewhere.
        if (line.contains(" seconds") || line.contains("wine error logs:") || line.startsWith("M0 warn") ||
            line.startsWith("M0 err") || line.startsWith("M0 trace"))
            return;
        m_told << line;
    }

    QString told() const {
        QString text = m_told.join('|');
        for (const auto& word : Words)
            text.replace(word.first, word.second);
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
            writeBottle("close", "");
        });
        connect(launch, &ExeFileExecutor::Fixing, this, [this] { note("fixing"); });
        connect(launch, &ExeFileExecutor::runSuccessed, this, [this] {
            note("succeeded");
            ++m_results;
        });
        connect(launch, &ExeFileExecutor::runFailed, this, [this](bool canWeFix, bool isSuccessed) {
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

private Q_SLOTS:
    void init() {
        m_service = std::make_unique<FakeBottleService>();
        QVERIFY(m_service->start());
        m_file = m_home.write("files/a.exe", "MZ");
        QDir(m_home.data() + "/lumora-wine-bottles").removeRecursively();
        ComponentManager::instance()->runnerInstalled = QStringList{Stable};
        ComponentManager::instance()->runnerSupported.clear();
    }
    void cleanup() {
        m_executor.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!m_directory.isEmpty())
            writeBottle("close", "");
        m_service.reset();
    }

    void launches_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("logs");
        QTest::addColumn<QString>("how");  // "staging" is known or "stagingUsed"; "public"; "stored"
        QTest::addColumn<int>("repairs");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const char* program, const QStringList& logs, const char* how,
                            int repairs, const char* expected) {
            QTest::newRow(name) << program << logs << how << repairs << expected;
        };
        const QString none;
        row("window", "show", {}, "", 0, "launch|window|parse|ended 0|not crashed|succeeded");
        row("exit code after a window", "show; (exit 7)", {}, "", 0,
            "launch|window|parse|ended 7|not crashed|succeeded");
        row("no window", "(exit 53)", {}, "", 0,
            "launch|parse|ended 53 without window|nothing fixed|failed 0 0");
        row("no window, code 0", ":", {}, "", 0,
            "launch|parse|ended 0 without window|nothing fixed|failed 0 0");
        row("first process lets go", "touch alive; { sleep 0.3; show; rm -f alive; } & touch alive; exit 0",
            {}, "", 0, "launch|window|parse|ended 0|not crashed|succeeded");
        row("outlives its window", "show; wait_for close", {}, "", 0,
            "launch|window|parse|ended 0|not crashed|succeeded");
        row("repair, offered and not taken", "(exit 53)", {Gecko}, "", 0,
            "launch|parse|needs gecko|ended 53 without window|failed 1 0");
        row("repair helps", "[ $RUN = 2 ] && show || (exit 53)", {Gecko}, "", 1,
            "launch|parse|needs gecko|ended 53 without window|failed 1 0|fixing|install gecko|"
            "M2 Setup Success|launch|window|parse|ended 0|not crashed|succeeded");
        row("repair does not help", "(exit 53)", {Gecko, Gecko}, "staging", 9,
            "launch|parse|needs gecko|ended 53 without window|failed 1 0|fixing|install gecko|"
            "M2 Setup Success|launch|parse|ended 53 without window|nothing fixed|failed 0 0");
        row("repair of one that outlives its window", "[ $RUN = 2 ] || { show; wait_for close; }",
            {Gecko, none}, "", 1,
            "launch|window|parse|needs gecko|ended 0|failed 1 0|fixing|install gecko|M2 Setup Success|"
            "launch|parse|ended 0 without window|nothing fixed|failed 0 0");
        row("repair uncovers the next", "[ $RUN != 1 ] && show || (exit 53)", {Gecko, Font}, "", 1,
            "launch|parse|needs gecko|ended 53 without window|failed 1 0|fixing|install gecko|"
            "M2 Setup Success|launch|window|parse|fonts simsun.ttc|ended 0|fixing|launch|window|parse|ended "
            "0|"
            "not crashed|succeeded");
        row("fonts only, of one that ran", "show", {Font}, "", 0,
            "launch|window|parse|fonts simsun.ttc|ended 0|failed 1 1");
        row("crash without a finding", "(exit 5)", {Crash}, "", 0,
            "launch|parse|M0 Detech crash in wine logs|ended 5 without window|nothing fixed|failed 0 0");
        row("setup failed behind a window", "show", {"err:setupapi:x\n"}, "", 0,
            "launch|window|parse|ended 0|nothing fixed|failed 0 0");
        row("staging helps", "[ $RUN = 2 ] && show || (exit 1)", {}, "staging", 1,
            "launch|parse|ended 1 without window|try staging|failed 1 0|fixing|switch|switched|launch|"
            "window|parse|ended 0|not crashed|succeeded");
        row("staging does not help", "(exit 1)", {}, "staging", 9,
            "launch|parse|ended 1 without window|try staging|failed 1 0|fixing|switch|switched|launch|"
            "parse|ended 1 without window|nothing fixed|failed 0 0");
        row("staging is in use", "(exit 1)", {}, "stagingUsed", 9,
            "launch|parse|ended 1 without window|try staging|failed 1 0|failed 0 0");
        row("stored, staging known", "(exit 1)", {}, "stored staging", 9,
            "launch|launch|parse|ended 1 without window|failed 0 0");
        row("public", "(exit 1)", {Gecko}, "public staging", 9,
            "launch|ended 1 without window|nothing fixed|failed 0 0");
        row("fixup of a public one", "(exit 1)", {}, "public fixup", 0,
            "M1 Try to fix application with those components:|M1 - gecko|fixing|install gecko|"
            "M2 Setup Success|launch|ended 1 without window|nothing fixed|failed 0 0");
        row("fixup", "show", {Gecko}, "fixup", 0,
            "M1 Try to fix application with those components:|M1 - gecko|fixing|install gecko|"
            "M2 Setup Success|launch|window|parse|ended 0|not crashed|succeeded");
    }
    void launches() {
        QFETCH(QString, program);
        QFETCH(QStringList, logs);
        QFETCH(QString, how);
        QFETCH(int, repairs);
        const QString name = how.contains("public") ? "public/x" : privateBottleNameOf(m_file);
        m_service->setText("checkPublicBottles", how.contains("public") ? name : "");
        makeBottle(name, how.contains("stagingUsed") ? Staging : Stable);
        writeBottle("program", program.toUtf8());
        for (int i = 0; i < logs.size(); ++i)
            writeBottle(QString("log%1").arg(i + 1), logs[i].toUtf8());
        if (how.contains("staging"))
            ComponentManager::instance()->runnerSupported = QStringList{Staging};
        create(repairs);
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
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        const QString start = "S1 Initializing Envrironment|";
        QTEST(told().startsWith(start) ? told().mid(start.size()) : told(), "expected");
        // A result is the last word, and links are looked for once before it.
        m_executor->onExeFinished(0);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(m_results, 1);
        const bool isFinal = told().contains("nothing fixed") || told().contains("not crashed");
        QCOMPARE(m_service->calls("scanApplicationLinks").size(), int(isFinal));
        QCOMPARE(m_service->calls("setRunner").size(), told().count("switched"));
    }

    void resultWaitsForTheLinks() {
        makeBottle(privateBottleNameOf(m_file));
        writeBottle("program", "show");
        m_service->setHeld("scanApplicationLinks", "[]");
        create();
        m_executor->start();
        const RecordedCall call = m_service->waitForCall("scanApplicationLinks", 1, LaunchMs);
        QCOMPARE(call.arguments[0].toString(), m_bottle);
        QVERIFY(told().endsWith("ended 0"));
        m_executor->applyFix();  // in vain
        m_service->release();
        QTRY_COMPARE(m_results, 1);
        QVERIFY(told().endsWith("ended 0|not crashed|succeeded"));
    }

    void runnerAndBottle_data() {
        QTest::addColumn<QString>("install");  // the answer, or "kill" for a service that dies
        QTest::addColumn<int>("signal");       // success of the signal; -1 for none
        QTest::addColumn<QString>("creation");
        QTest::addColumn<QString>("expected");
        const QString end = "|launch|parse|ended 67 without window|nothing fixed|failed 0 0";
        QTest::newRow("installed") << "{\"ok\":true}" << 1 << "{\"ok\":true}"
                                   << "download|M2 Downloading lumora-wine10-stable: 33%|downloaded|create" +
                                          end;
        QTest::newRow("failed") << "{\"ok\":true}" << 0 << "no json"
                                << "download|M2 Downloading lumora-wine10-stable: 33%|fallback|create" + end;
        QTest::newRow("refused") << "{\"ok\":false}" << -1 << "error"
                                 << "download|fallback|create" + end;
        QTest::newRow("error") << "error" << -1 << "{\"ok\":false}"
                               << "download|fallback|create" + end;
        QTest::newRow("killed") << "kill" << -1 << ""
                                << "download|fallback|create" + end;
        QTest::newRow("vanishes") << "vanish" << -1 << ""
                                  << "download|fallback|create" + end;
        QTest::newRow("creation dies")
            << "{\"ok\":true}" << 1 << "vanish"
            << "download|M2 Downloading lumora-wine10-stable: 33%|downloaded|create" + end;
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
        answer("createBottles", creation);
        m_bottle = privateBottleNameOf(m_file);
        m_directory.clear();
        auto* manager = ComponentManager::instance();
        manager->runnerInstalled.clear();
        create();
        m_executor->start();
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
        }
        // A bottle that was not made makes the script say so; nothing else has an end here.
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        QString line = told().remove("new|");
        line.replace("ended 0 ", "ended 67 ");  // the monitor's script may be the first to say it
        QTEST(line, "expected");
        QCOMPARE(m_results, 1);
    }

    /// The service dies while a repair is under way, and does not come back.
    void serviceGoneInRepair_data() {
        QTest::addColumn<QString>("log");
        QTest::addColumn<QString>("expected");
        QTest::newRow("components") << QString(Gecko)
                                    << "install gecko|M2 Setup Failed|launch|parse|ended 1 without window|"
                                       "nothing fixed|failed 0 0";
        QTest::newRow("runner") << QString() << "switch|nothing fixed|failed 0 0";
    }
    void serviceGoneInRepair() {
        QFETCH(QString, log);
        QFETCH(QString, expected);
        ComponentManager::instance()->runnerSupported = QStringList{Staging};
        makeBottle(privateBottleNameOf(m_file));
        writeBottle("program", "(exit 1)");
        writeBottle("log1", log.toUtf8());
        for (const char* method : {"installDependency", "setRunner"})
            m_service->setHeld(method, "{}");
        create(1);
        m_bottle = "none of the answers";  // of react()
        m_executor->start();
        QVERIFY(!m_service->waitForCall(log.isEmpty() ? "setRunner" : "installDependency", 1, LaunchMs)
                     .method.isEmpty());
        m_service->kill();
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        QVERIFY2(told().endsWith(expected), qPrintable(told()));
        QCOMPARE(m_results, 1);
    }

    void deletedInEachState_data() {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("log");
        QTest::newRow("choosing") << "checkPublicBottles"
                                  << "";
        QTest::newRow("running") << "get"
                                 << "";
        QTest::newRow("links") << "scanApplicationLinks"
                               << "";
        QTest::newRow("runner") << "setRunner"
                                << "";
        QTest::newRow("components") << "installDependency" << QString(Gecko);
    }
    void deletedInEachState() {
        QFETCH(QString, call);
        QFETCH(QString, log);
        makeBottle(privateBottleNameOf(m_file));
        writeBottle("program", call == "scanApplicationLinks" ? "show" : "(exit 1)");
        writeBottle("log1", log.toUtf8());
        if (call == "setRunner")
            ComponentManager::instance()->runnerSupported = QStringList{Staging};
        if (call == "checkPublicBottles" || call == "scanApplicationLinks")
            m_service->setHeld(call, "");
        create(1);
        m_bottle = "none of the answers";
        if (call != "checkPublicBottles")
            m_executor->start();
        QVERIFY(!m_service->waitForCall(call, 1, LaunchMs).method.isEmpty());
        const int results = m_results;
        m_executor.reset();
        m_service->release();
        Q_EMIT BottlesConfig::instance()->component_setup_done(m_bottle, "runner", Staging, "");
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(m_results, results);
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

    /// In a terminal nobody watches for windows, and every exit code will do.
    void console() {
        if (!QFile::copy(QString(TEST_BINARY_DIR) + "/tests/programs/x64/console.exe", m_file + "c.exe"))
            QSKIP("the Windows compiler is not on this machine");
        m_file += "c.exe";
        makeBottle(privateBottleNameOf(m_file));
        writeBottle("program", "wait_for close; exit 70");
        create();
        m_executor->start();
        QTRY_VERIFY2_WITH_TIMEOUT(m_results > 0, qPrintable(told()), LaunchMs);
        QCOMPARE(
            told().section('|', 2),
            QString("M1 This application is a console application, launch in terminal|window|parse|ended "
                    "70|not crashed|succeeded"));
        QVERIFY(!QFile::exists(m_directory + "/watches"));
    }
};

QTEST_MAIN(ExeFileExecutorTest)
#include "ExeFileExecutorTest.moc"
