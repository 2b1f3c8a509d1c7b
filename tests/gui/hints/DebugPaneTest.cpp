#include "backend/PendingWork.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/window/Application.h"
#include "gui/hints/HintsFixture.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/FailedStarts.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"
#include "shell/configuration/parameters/LogFileEdit.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"

using namespace TestSupport;

namespace {

const char MissingFont[] = "0024:warn:file:x L\"C:\\\\windows\\\\Fonts\\\\simsun.ttc\" not found\n";
const char NotComeUp[] = "Application is not running as expected";

}  // namespace

/// The log pane of the configuration window: debugging runs, and the hints after them.
class DebugPaneTest : public QObject, HintsFixture {
    Q_OBJECT

    void run() {
        QTRY_VERIFY(find("debug_btn")->isEnabled());
        find<QAbstractButton>("debug_btn")->click();
    }
    void waitForEnd() {
        QTRY_VERIFY(!lines().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(find("debug_btn")->isVisible() && find("debug_btn")->isEnabled(), 30000);
    }

private Q_SLOTS:
    void initTestCase() { startService(); }
    void init() { makeBottle(); }
    void cleanup() { closeWindow(); }
    void cleanupTestCase() { m_service.reset(); }

    void runEndsInHints() {
        m_bottle.write(
            "log1", QByteArray("0024:trace:seh:x\n0024:fixme:a\n\x1b[31m0024:err:b\x1b[0m\n") + MissingFont);
        m_bottle.write(QString("logs/wine-program-%1.txt").arg(Id), "0024:err:of an earlier run\n");
        open();
        run();
        waitForEnd();
        QTRY_VERIFY2(hints()->isVisible(), qPrintable(lines().join("\n")));
        QVERIFY(hints()->page().contains("simsun.ttc") && !hints()->page().contains(NotComeUp));
        QVERIFY(lines().contains("0024:fixme:a") && lines().contains("0024:err:b"));
        QVERIFY(!lines().join('\n').contains("trace") && !lines().join('\n').contains("earlier"));
        const QString missed = outOfReach(m_view);
        QVERIFY2(!missed.contains("Log") && !missed.contains("Hints"), qPrintable(missed));
        find<QAbstractButton>("cxb_refresh_terminal")->click();
        QVERIFY(lines().isEmpty() && !hints()->isVisible());
    }

    /// No window, a window, a window of another program.
    void launchResultCounts_data() {
        const Table<QString, bool> row("program", "isExpected");
        row("none", "", false);
        row("ours", Id, true);
        row("another", "other", false);
    }
    void launchResultCounts() {
        QFETCH(QString, program);
        m_bottle.write("program", "wait_for close");
        m_bottle.write("log1", "0024:fixme:a\n");
        open();
        run();
        QTRY_VERIFY_WITH_TIMEOUT(lines().contains("0024:fixme:a"), 30000);
        if (!program.isEmpty())
            Q_EMIT AppBootingStateManager::instance()->launchResult(program, true, 1);
        const LogCapture log;
        m_bottle.write("close", "");
        waitForEnd();
        QTRY_VERIFY2(log.contains(":::"), qPrintable(log.text()));
        QTEST(!hints()->page().contains(NotComeUp), "isExpected");
    }

    void brokenSteamRuntimeIsEnded_data() {
        const Table<bool, QString> row("isThere", "log");
        row("not there", false, "Kill steam runtime failed");
        row("there", true, "Kill steam runtime success");
    }
    void brokenSteamRuntimeIsEnded() {
        QFETCH(bool, isThere);
        QFETCH(QString, log);
        const LogCapture messages;
        if (isThere)
            QVERIFY(m_service->takeName("com.lumora.SteamRuntimeService"));
        setBottle("ge-proton9");
        m_bottle.write("log1", "python3: error while loading shared libraries: libx.so\n");
        open();
        run();
        waitForEnd();
        QTRY_VERIFY2(messages.contains(log), qPrintable(messages.text()));
        QCOMPARE(m_service->calls("Terminate").size(), int(isThere));
        QTRY_COMPARE(hints()->page().contains("Killed broken steam runtime"), isThere);
    }

    /// What runs in it now is not what the log of an earlier run is about.
    void steamRuntimeOfAnEarlierRunIsLeft() {
        QVERIFY(m_service->takeName("com.lumora.SteamRuntimeService"));
        setBottle("ge-proton9");
        m_bottle.write(QString("logs/wine-program-%1.txt").arg(Id),
                       QByteArray("python3: error while loading shared libraries: libx.so\n") + MissingFont);
        open();
        m_view->showLogs();
        QTRY_VERIFY(hints()->page().contains("simsun.ttc"));
        QVERIFY(m_service->calls("Terminate").isEmpty());
    }

    void chosenLogIsWrittenWithoutTheWindow() {
        m_bottle.write("program", "wait_for close");
        m_bottle.write("log1", "0024:fixme:a\n");
        open();
        const QString kept = m_home.path() + "/kept.log";
        find<LogFileEdit>("params_log_file")->setPath(kept);
        run();
        QTRY_VERIFY_WITH_TIMEOUT(lines().contains("0024:fixme:a"), 30000);
        delete m_view;
        QVERIFY(PendingWork::instance()->isPending());
        m_bottle.write("close", "");
        QTRY_VERIFY_WITH_TIMEOUT(!PendingWork::instance()->isPending(), 30000);
        QVERIFY(readFile(kept).contains("0024:fixme:a"));
    }

    /// The record changes elsewhere: what is typed stays, the rest follows and is not put back at the end.
    void typedParametersStay() {
        open();
        m_view->onConfigurePageToggled(BottlesConfigView::WineParameter);
        auto* arguments = find<Fenk::LineEdit>("params_arguments")->lineEdit();
        auto* environment = find<Fenk::LineEdit>("params_environment")->lineEdit();
        QTest::keyClicks(arguments, "-b");
        const auto changeElsewhere = [this](const QString& value) {
            m_program.insert("envs", QJsonObject{{"A", value}});
            setBottle("wine");
            QVERIFY(m_service->emitSignal("program_updated", "sss", {Bottle, Id, "{}"}));
        };
        changeElsewhere("1");
        QTRY_COMPARE(environment->text(), QString("A=1"));
        QCOMPARE(arguments->text(), QString("-b"));
        changeElsewhere("2");
        QTRY_COMPARE(environment->text(), QString("A=2"));
        delete m_view;
        const QJsonArray sent = m_service->waitForCall("updateExternalProgram").arguments;
        QCOMPARE(QJsonDocument::fromJson(sent.at(1).toString().toUtf8()).object(),
                 (QJsonObject{{"id", Id}, {"arguments", "-b"}, {"envs", QJsonObject{{"A", "2"}}}}));
    }

    void selectionDuringARunIsShownAfterIt() {
        m_bottle.write("program", "wait_for close");
        m_bottle.write("log1", "0024:fixme:a\n");
        m_bottle.write("logs/wine-program-z.txt", "0024:fixme:of another\n");
        m_service->setBottle(
            Bottle, {{"Path", m_bottle.directory()},
                     {"Runner", "wine"},
                     {"External_Programs", QJsonObject{{Id, m_program}, {"z", QJsonObject{{"name", "z"}}}}}});
        open();
        run();
        QTRY_VERIFY_WITH_TIMEOUT(lines().contains("0024:fixme:a"), 30000);
        m_view->selectProgramById("z");
        QVERIFY(find("stop_debug_btn")->toolTip().contains("Notes"));
        m_view->explainFailure();
        QVERIFY(lines().contains("0024:fixme:a"));
        m_bottle.write("close", "");
        waitForEnd();
        QTRY_COMPARE(lines(), QStringList{"0024:fixme:of another"});
    }

    void failedStartIsLookedThrough() {
        QVERIFY(QFile::remove(m_bottle.directory() + "/drive_c/notes.exe"));
        const LogCapture log;
        open();
        run();
        waitForEnd();
        QTRY_VERIFY2(log.contains(":::"), qPrintable(lines().join('\n')));
    }

    void appendedPiecesAreLines() {
        open();
        m_view->showLogs();
        for (const char* piece : {"0024:fix", "me:a\n0024:tra", "ce:b\n0024:fixme:c\n"})
            m_view->slotsAppendLogs(piece);
        QTRY_COMPARE(lines(), (QStringList{"0024:fixme:a", "0024:fixme:c"}));
    }

    void stopEndsTheRun() {
        m_bottle.write("program", "wait_for never");
        m_bottle.write("log1", "0024:fixme:a\n");
        open();
        run();
        QTRY_VERIFY_WITH_TIMEOUT(lines().contains("0024:fixme:a"), 30000);
        find<QAbstractButton>("stop_debug_btn")->click();
        QCOMPARE(m_service->waitForCall("killProgram").arguments, (QJsonArray{Bottle, Id}));
        waitForEnd();  // the fake service ends nothing
    }

    /// The banner's way to this window.
    void failureIsExplained() {
        m_bottle.write("logs/wine-notes.exe.txt", QByteArray("0024:err:seen before\n") + MissingFont);
        const QPointer<BottleConfigWindow> window =
            LaunchedConfigWindow::open({Bottle, Id}, LaunchWindows::ConfigMode::Debugging, nullptr);
        m_view = BottlesConfigView::openWindowOf(Bottle);
        QTRY_VERIFY(hints()->page().contains("simsun.ttc"));
        QTRY_COMPARE(lines().filter("0024:err:seen before").size(), 1);
        m_bottle.write("logs/wine-notes.exe.txt", "0024:fixme:a\n");
        FailedStarts::instance()->mark(Bottle, Id, {"No window came up.", {}});
        LaunchedConfigWindow::open({Bottle, Id}, LaunchWindows::ConfigMode::Debugging, nullptr);
        QTRY_VERIFY(hints()->page().contains(NotComeUp));
    }

    /// Also a line that Wine calls a fixme, where the rule of the pane finds an error in it.
    void errorsAreMarked() {
        open();
        m_view->showLogs();
        frame()->append({{"0024:fixme:ole:x stderr", true}, {"0024:fixme:ole:x", false}});
        const LogStore& store = frame()->log()->store();
        QVERIFY(store.isError(0) && !store.isError(1));
    }

    void logIsBounded() {
        open();
        m_view->showLogs();
        frame()->append(QVector<LiveLogLine>(DebugLog::MaxLines + 7, {"x", false}));
        QCOMPARE(frame()->log()->store().lineCount(), DebugLog::MaxLines);
        QTRY_VERIFY(find("dropped_lines")->isVisible());
        frame()->append({{"y", false, 5}});
        QCOMPARE(frame()->log()->store().droppedLines(), 7 + 1 + 5);
    }
};

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    DebugPaneTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "DebugPaneTest.moc"
