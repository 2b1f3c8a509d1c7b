#include "launch/run/ExeFileRunner.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include "LaunchFixture.h"
#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "launch/LaunchWindows.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/bottle/PrivateBottleName.h"
#include "launch/records/LaunchRecord.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using namespace TestSupport;

namespace {

const char Uuid[] = "11111111-2222-3333-4444-555555555555";
const char Gecko[] =
    "err:mshtml:create_document_object Failed to init Gecko, returning CLASS_E_CLASSNOTAVAILABLE\n";

class ConfigWindow : public BottleConfigWindow {
public:
    QStringList said;
    void setLoading(bool loading) override { said << (loading ? "loading" : "loaded"); }
    void selectProgram(const QString& exePath) override { said << QFileInfo(exePath).fileName(); }
};

}  // namespace

/// What a launch shows and what becomes of its bottle, with the real launch script and a Wine and a service
/// that do as they are told.
class ExeFileRunnerTest : public QObject, private LaunchFixture {
    Q_OBJECT

    std::unique_ptr<ConfigWindow> m_window;  ///< null: there is none
    bool m_isDebugging = false;              ///< how it was opened
    QPointer<ExeFileRunner> m_runner;
    int m_ends = 0;

    WineExeLaunchBanner* banner() const {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<WineExeLaunchBanner*>(window))
                return found;
        }
        return nullptr;
    }

    void click(const char* name) const {
        for (auto* button : banner()->findChildren<QPushButton*>()) {
            if (button->accessibleName() == QLatin1String(name) && button->isVisible())
                button->click();
        }
    }

    bool isOffered(const char* name) const {
        for (const auto* button : banner()->findChildren<QPushButton*>()) {
            if (button->accessibleName() == QLatin1String(name))
                return button->isVisible();
        }
        return false;
    }

    void makeBottle(const QString& name, bool hasProgram) {
        const QJsonObject linked{{"id", Uuid}, {"name", "Stored"}, {"path", "C:\\linked.exe"}};
        const QJsonObject programs = hasProgram ? QJsonObject{{Uuid, linked}} : QJsonObject();
        LaunchFixture::makeBottle(name, {{"External_Programs", programs}});
    }

    QString run(const QString& file) {
        m_runner = new ExeFileRunner(file, this);
        m_ends = 0;
        connect(m_runner, &ExeFileRunner::emit_finished, this, [this] { ++m_ends; });
        return m_runner->run() == 0 ? m_runner->id() : QString();
    }

    /// What the service was told to change, in order.
    QString changes() {
        QStringList told;
        for (const RecordedCall& call : m_service->calls()) {
            if (call.method == "updateExternalProgram")
                told << "added";
            else if (call.method == "removeExternalProgram")
                told << "removed";
            else if (call.method == "delete" || call.method == "killWineServer" ||
                     call.method.startsWith("cancel"))
                told << call.method;
            else if (call.method == "deleteIfUnused")
                told << (call.arguments[1].toString().isEmpty() ? "clean" : "clean-but-added");
        }
        return told.join(' ');
    }

private Q_SLOTS:
    void init() {
        QVERIFY(startService());
        m_window.reset();
        LaunchWindows::instance().configuration = [this](const ProgramRef&, LaunchWindows::ConfigMode mode,
                                                         QWidget*) {
            m_isDebugging = mode == LaunchWindows::ConfigMode::Debugging;
            return m_window.get();
        };
    }
    void cleanup() {
        delete m_runner;
        stopService();
    }

    void launches_data() {
        // bottle: "public" or its own; "links" has a program, "files" others
        // user: what is done at the failed banner, or at the running one: "stop"
        const Table<QString, QString, QString, QString, QString> row("file", "bottle", "program", "user",
                                                                     "changes");
        const char installer[] = "setup_nothing.exe";
        row("window", "a.exe", "", "show", "close window", "added");
        row("failure", "a.exe", "", ":", "close", "added");
        row("failure, debug without a window", "a.exe", "", ":", "debug close", "added");
        row("repair", "a.exe", "", "[ $RUN != 1 ] && show || (exit 1)", "repair, close window", "added");
        row("repair, programs run", "a.exe", "", "[ $RUN != 1 ] && show || (exit 1)",
            "repair, ask, close window", "added killWineServer");
        row("repair fails, again", "a.exe", "", "[ $RUN -gt 2 ] && show || (exit 1)",
            "repair, fail, close window", "added");
        row("repair stopped", "a.exe", "", "(exit 1)", "repair, stop",
            "added cancelDependency killWineServer");
        row("stopped", "a.exe", "", "touch alive; wait_for close", "stop", "killWineServer");
        row("installer with links", installer, "links", "show", "close window",
            "added clean-but-added removed");
        row("installer with files", installer, "files", "show", "close window", "added clean-but-added");
        row("installer, no answer", installer, "unknown", "show", "close window",
            "added clean-but-added clean-but-added");
        row("installer without links", installer, "", "show", "close window", "added clean-but-added");
        row("failed installer", installer, "", ":", "close", "added clean-but-added");
        row("failed installer with links", installer, "links", ":", "close", "clean");
        row("failed installer, debug", installer, "files", ":", "debug window", "added clean-but-added");
        row("stopped installer", installer, "", "touch alive; wait_for close", "stop",
            "killWineServer clean");
        row("stopped installer with files", installer, "files", "touch alive; wait_for close", "stop",
            "killWineServer clean added");
        // Its window goes, and what it has started shows one later than the monitor waits for it.
        row("installer hands over", installer, "links",
            "show; { wait_for later; show; rm -f alive; } & exec true", "hand over, close window",
            "added clean-but-added removed");
        row("public", "a.exe", "public links", "show", "close window", "added");
        row("public failure", "a.exe", "public links", ":", "close", "");
    }
    void launches() {
        QFETCH(QString, file);
        QFETCH(QString, bottle);
        QFETCH(QString, program);
        QFETCH(QString, user);
        QByteArray content = "MZ";
        if (file != "a.exe")
            content = readFile(QString(TEST_BINARY_DIR "/tests/programs/x64/") + file);
        if (content.isEmpty())
            QSKIP("the installer was not built");
        const QString path = m_home.write("files/" + file, content);
        makeBottle(bottle.contains("public") ? "public/x" : privateBottleNameOf(path),
                   bottle.contains("links"));
        if (bottle == "unknown")
            m_service->setError("deleteIfUnused", "no");
        else
            m_service->setJson("deleteIfUnused", QJsonObject{{"deleted", bottle.isEmpty()},
                                                             {"programs", bottle == "links" ? QJsonArray{Uuid}
                                                                                            : QJsonArray()}});
        m_standIn.write("program", program.toUtf8());
        if (user.contains("repair"))
            m_standIn.write("log1", Gecko);
        QCOMPARE(run(path), m_bottle);
        QVERIFY(banner() && banner()->isVisible());
        QCOMPARE(banner()->closeState(), int(WineExeLaunchBanner::Running));
        if (user == "stop") {
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_standIn.directory() + "/alive"), LaunchMs);
            Q_EMIT banner()->stopRunning();
        } else if (!user.startsWith("close window") && !user.startsWith("hand over")) {
            QTRY_COMPARE_WITH_TIMEOUT(banner()->closeState(), int(WineExeLaunchBanner::Failed), LaunchMs);
            QVERIFY(banner()->isVisible());
            QCOMPARE(m_ends, 0);
        }
        if (user.startsWith("debug")) {
            if (user.endsWith("window"))
                m_window = std::make_unique<ConfigWindow>();
            click("debug_btn");
            QVERIFY(m_isDebugging);
            QCOMPARE(banner()->isVisible(), !m_window);
        }
        if (m_window) {
            const int scans = m_service->calls("scanApplicationLinks").size();
            Q_EMIT m_window->closed();
            QCOMPARE(m_service->calls("scanApplicationLinks").size(), scans + 1);
        }
        if (user.startsWith("repair")) {
            click("repair_btn");
            QVERIFY(!m_service->waitForCall("installDependency").method.isEmpty());
            QCOMPARE(banner()->closeState(), int(WineExeLaunchBanner::Running));
            if (user.contains("ask")) {
                const QJsonObject busy{{"ok", false}, {"busy", QJsonArray{"Harbour"}}};
                Q_EMIT BottlesConfig::instance()->dependecyInstalled(m_bottle, "gecko", busy);
                auto* question = banner()->findChild<RunningProgramsQuestion*>();
                QVERIFY(question && question->isVisible());
                question->button(1)->click();
                QVERIFY(!m_service->waitForCall("installDependency", 2).method.isEmpty());
            }
            if (user.contains("fail")) {
                // The program is started without it; what was missing can be tried once more.
                const QJsonObject reason{{"code", "http-status"},
                                         {"arguments", QJsonArray{"gecko.msi", "http://x", "404"}}};
                m_service->setJson("describe", QJsonArray{QJsonObject{{"name", "gecko"},
                                                                      {"files", QJsonArray{QJsonObject{}}}}});
                Q_EMIT BottlesConfig::instance()->dependecyInstalled(
                    m_bottle, "gecko", {{"ok", false}, {"reasons", QJsonArray{reason}}});
                QTRY_VERIFY_WITH_TIMEOUT(isOffered("retry_btn") && isOffered("choose_file_btn"), LaunchMs);
                QTRY_COMPARE(
                    banner()->findChild<QLabel*>("description")->text(),
                    QString(
                        "Wine Gecko could not be installed: gecko.msi could not be fetched from http://x: "
                        "the server answers 404."));
                click("retry_btn");
                QVERIFY(!m_service->waitForCall("installDependency", 2).method.isEmpty());
            }
            if (user.endsWith("stop"))
                Q_EMIT banner()->stopRunning();
            else
                Q_EMIT BottlesConfig::instance()->dependecyInstalled(m_bottle, "gecko", {{"ok", true}});
        }
        if (user.startsWith("hand over")) {
            QTRY_VERIFY_WITH_TIMEOUT(!banner()->isVisible(), LaunchMs);
            m_standIn.write("close", "");
            QTRY_VERIFY_WITH_TIMEOUT(banner()->isVisible(), LaunchMs);  // so that it can be stopped
            QCOMPARE(m_ends, 0);
            m_standIn.write("later", "");
            QTRY_VERIFY(QFile::exists(m_standIn.directory() + "/window"));
        }
        if (user.endsWith("close window")) {
            QTRY_VERIFY_WITH_TIMEOUT(!banner()->isVisible(), LaunchMs);
            QCOMPARE(m_ends, 0);
            m_standIn.write("close", "");
        } else if (user.endsWith("close")) {
            banner()->close();
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, LaunchMs);
        QTRY_VERIFY(!m_runner && !banner());
        QFETCH(QString, changes);
        QTRY_COMPARE(this->changes(), changes);
        QCOMPARE(m_ends, 1);
    }

    /// The bottle of a launch that is stopped before it came about: the service answers late, and the launch
    /// is gone by then.
    void stoppedBeforeTheBottle() {
        const QString path = m_home.write("files/a.exe", "MZ");
        m_service->setHeld("createBottles", "{\"ok\":true}");
        m_service->setHeld("deleteIfUnused", "{\"deleted\":true}");
        LogCapture log;
        const QString bottle = run(path);
        QCOMPARE(m_service->waitForCall("createBottles").arguments[0].toString(), bottle);
        QVERIFY(banner());
        Q_EMIT banner()->stopRunning();
        QTRY_VERIFY(!m_runner && m_ends == 1);
        QCOMPARE(m_service->waitForCall("deleteIfUnused").arguments, QJsonArray({bottle, ""}));
        QVERIFY(PendingWork::instance()->isPending());
        m_service->release();
        QTRY_VERIFY(!PendingWork::instance()->isPending());
        QVERIFY(log.contains("delete wine container " + bottle));
    }

    /// The launch is over before the service has entered its file: the record counts it all the same, and the
    /// process does not leave before.
    void recordWaitsForTheEntry() {
        const QString path = m_home.write("files/a.exe", "MZ");
        const QString events = m_home.path() + "/.local/state/lumora-event-log/cellarix.jsonl";
        QFile::remove(events);
        makeBottle(privateBottleNameOf(path), false);
        m_service->setHeld("updateExternalProgram", "");
        m_standIn.write("program", ":");
        QCOMPARE(run(path), m_bottle);
        QTRY_COMPARE_WITH_TIMEOUT(banner()->closeState(), int(WineExeLaunchBanner::Failed), LaunchMs);
        banner()->close();
        QTRY_VERIFY(m_ends == 1 && !m_runner);
        QVERIFY(!m_service->waitForCall("updateExternalProgram").method.isEmpty());
        QVERIFY(PendingWork::instance()->isPending());
        const QJsonObject entry{{"id", Uuid}, {"path", path}};
        m_service->setBottle(m_bottle, {{"External_Programs", QJsonObject{{Uuid, entry}}}});
        QCOMPARE(m_service->release("updateExternalProgram"), 1);
        QTRY_VERIFY(!PendingWork::instance()->isPending());
        QTRY_VERIFY2(readFile(events).contains("\"program_cnt\":1"), readFile(events).constData());
    }

    void refusedRemovalIsLogged() {
        const QString path = m_home.write("files/setup_nothing.exe",
                                          readFile(TEST_BINARY_DIR "/tests/programs/x64/setup_nothing.exe"));
        if (QFileInfo(path).size() == 0)
            QSKIP("the installer was not built");
        makeBottle(privateBottleNameOf(path), true);
        m_service->setJson("deleteIfUnused", QJsonObject{{"programs", QJsonArray{Uuid}}});
        m_service->setError("removeExternalProgram", "not now");
        m_standIn.write("program", "show");
        LogCapture log;
        QCOMPARE(run(path), m_bottle);
        QTRY_VERIFY_WITH_TIMEOUT(!banner()->isVisible(), LaunchMs);
        m_standIn.write("close", "");
        QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, LaunchMs);
        QTRY_VERIFY(log.contains(QtWarningMsg, "the set-up stays a program of " + m_bottle + " not now"));
    }

    void unknownPrograms() {
        makeBottle("b", true);
        const QStringList components{"gecko"};
        const QStringList none{"none", Uuid, "Invalid bottles name:"},
            other{"b", "x", "not found in bottles:"};
        for (const QStringList& row : {none, other}) {
            for (const bool isFixup : {false, true}) {
                LogCapture log;
                m_runner = new ExeFileRunner(row[0], row[1], this);
                QSignalSpy ends(m_runner, &ExeFileRunner::emit_finished);
                QCOMPARE(isFixup ? m_runner->fixup(row[0], row[1], components) : m_runner->runProgram(), -1);
                QCOMPARE(ends.size(), 1);
                QVERIFY2(log.contains(row[2]) && !banner()->isVisible(), qPrintable(log.text()));
                delete m_runner;
            }
        }
    }

    void configWindow() {
        const QString path = m_home.write("files/a.exe", "MZ");
        m_runner = new ExeFileRunner(path, this);
        QCOMPARE(m_runner->runInBottlesConfigWindow(), -1);
        delete m_runner;

        m_window = std::make_unique<ConfigWindow>();
        m_runner = new ExeFileRunner(path, this);
        QSignalSpy ends(m_runner, &ExeFileRunner::emit_finished);
        QCOMPARE(m_runner->runInBottlesConfigWindow(), 0);
        QCOMPARE(m_service->calls("createBottles").size(), 1);
        QCOMPARE(m_window->said, QStringList({"loading", "a.exe", "loaded"}));
        QVERIFY(!banner()->isVisible());
        QCOMPARE(m_service->calls("scanApplicationLinks").size(), 0);
        Q_EMIT m_window->closed();
        QCOMPARE(ends.size(), 1);
        QTRY_COMPARE(changes(), QString("added"));
        QCOMPARE(m_service->calls("scanApplicationLinks").size(), 1);
    }

    void record() {
        LaunchRecord record;
        record.succeeded = true;
        record.exePath = "/x/a b.exe";
        record.fileInfo = {{"verinfo", QJsonObject()}};
        record.logLines = QStringList{"1", "2"};
        record.runner = "r";
        record.programs = 2;
        record.canceled = true;
        QCOMPARE(
            QJsonDocument(record.toJson({{"tid", 1}})).toJson(QJsonDocument::Compact),
            QByteArray("{\"action\":\"launch_exe\",\"canceled\":\"yes\",\"errorLogs_64\":\"MQoy\","
                       "\"exename\":\"a b.exe\",\"fileinfo_64\":\"eyJ2ZXJpbmZvIjp7fX0=\",\"program_cnt\":2,"
                       "\"rating\":0,\"repaired\":\"no\",\"runner\":\"r\",\"successed\":true,\"tid\":1}"));
    }
};

QTEST_MAIN(ExeFileRunnerTest)
#include "ExeFileRunnerTest.moc"
