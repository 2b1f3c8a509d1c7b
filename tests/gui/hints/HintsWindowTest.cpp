#include <QAbstractButton>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTreeView>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/FailedStarts.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "shell/configuration/hints/DebuggingLogsEdit.h"
#include "shell/configuration/hints/DebuggingLogsView.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ConfigPages.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/StandInBottle.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

const char Bottle[] = "office";
const char Id[] = "0b6e6f9e-0000-4000-8000-000000000001";
const char MissingFont[] = "0024:warn:file:x L\"C:\\\\windows\\\\Fonts\\\\simsun.ttc\" not found\n";
const char NotComeUp[] = "Application is not running as expected";

}  // namespace

/// The log pane and the hints of the configuration window, over a fake service and with the real launch
/// script, whose Wine does as it is told.
class HintsWindowTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    std::unique_ptr<FakeBottleService> m_service;
    StandInBottle m_bottle;
    QPointer<BottlesConfigView> m_view;
    QStringList m_opened;
    QJsonObject m_program;

    void setBottle(const QString& runner) {
        m_service->setBottle(Bottle, {{"Path", m_bottle.directory()},
                                      {"Runner", runner},
                                      {"Parameters", QJsonObject{{"renderer", "gl"}}},
                                      {"External_Programs", QJsonObject{{Id, m_program}}}});
    }
    void open() {
        m_view = new BottlesConfigView;
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle(Bottle);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view));
        QTRY_COMPARE(loaded.count(), 1);
    }
    template <class Widget = QWidget>
    Widget* find(const QString& name) const {
        return m_view->findChild<Widget*>(name);
    }
    DebuggingLogsFrame* frame() const { return m_view->findChild<DebuggingLogsFrame*>(); }
    DebuggingLogsView* hints() const { return frame()->hints(); }
    QStringList lines() const { return frame()->log()->lastLines(1000); }
    QString shownPage() const {
        for (const QAbstractButton* button :
             m_view->findChild<ConfigPages*>()->findChildren<QAbstractButton*>()) {
            if (button->isCheckable() && button->isChecked() && button->group())
                return button->text();
        }
        return {};
    }
    /// A page that stands in for the one of components while the window has none.
    QLineEdit* componentSearch() const {
        if (!find("components_search_edit")) {
            auto* page = new QWidget;
            (new QLineEdit(page))->setObjectName("components_search_edit");
            m_view->findChild<ConfigPages*>()->addPage(BottlesConfigView::Components,
                                                       "Component Installation", page);
        }
        return find<QLineEdit>("components_search_edit");
    }
    /// By the mouse.
    void clickLink(const QString& target) {
        QTextCursor cursor(hints()->document());
        while (cursor.charFormat().anchorHref() != target && !cursor.atEnd())
            cursor.movePosition(QTextCursor::NextCharacter);
        QVERIFY2(!cursor.atEnd(), qPrintable(hints()->page()));
        cursor.movePosition(QTextCursor::NextCharacter);
        hints()->setTextCursor(cursor);
        hints()->ensureCursorVisible();
        const auto place = [&] { return hints()->cursorRect(cursor).center() - QPoint(2, 0); };
        QTRY_COMPARE(hints()->anchorAt(place()), target);
        QTest::mouseClick(hints()->viewport(), Qt::LeftButton, {}, place());
    }
    void showAllHints() {
        HintFacts facts;
        facts.isMonoMissing = facts.isGame = true;
        facts.missingFonts = QStringList{"simsun.ttc"};
        m_view->showLogs();
        frame()->showHints(HintRules::of(facts));
    }
    void run() {
        QTRY_VERIFY(find("debug_btn")->isEnabled());
        find<QAbstractButton>("debug_btn")->click();
    }
    void waitForEnd() {
        QTRY_VERIFY(!lines().isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(find("debug_btn")->isVisible() && find("debug_btn")->isEnabled(), 30000);
    }

private Q_SLOTS:
    void onOpened(const QUrl& url) { m_opened << url.toString(); }

    void initTestCase() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::setUrlHandler(scheme, this, "onOpened");
        m_service = std::make_unique<FakeBottleService>();
        QVERIFY(m_service->start(true));
        m_service->setJson(
            "Components.list",
            QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"wine"}},
                                               {"supported", QJsonArray{"lumora-wine-staging"}}}}});
        QVERIFY(m_service->takeName());
    }
    void init() {
        m_opened.clear();
        m_bottle = StandInBottle(m_home.data(), Bottle);
        m_bottle.write("program", "exit 3");
        const QJsonObject program{{"id", Id}, {"name", "Notes"}, {"path", "C:\\notes.exe"}};
        const QString wine = m_bottle.directory() + "/wine";
        m_bottle.write("launch.json", QJsonDocument(QJsonObject{{"version", 1},
                                                                {"source", QJsonObject()},
                                                                {"wine", wine},
                                                                {"programs", QJsonObject{{Id, program}}}})
                                          .toJson());
        m_bottle.write("drive_c/notes.exe", "MZ");
        QDir(m_bottle.directory()).mkdir("dosdevices");
        QDir(m_bottle.directory()).mkdir("logs");
        QVERIFY(QFile::link("../drive_c", m_bottle.directory() + "/dosdevices/c:"));
        m_program = program;
        setBottle("wine");
    }
    void cleanup() {
        m_bottle.write("close", "");
        delete m_view;
    }
    void cleanupTestCase() { m_service.reset(); }

    void linksAreFollowed_data() {
        const Table<QString, QString, QString> row("link", "page", "opened");
        row("component", "component:dotnet48", "Component Installation", "");
        row("page", "tab:0", "Basic Configuration", "");
        row("folder", "{drive_c}/windows/Fonts", "", "drive_c/windows/Fonts");
        row("help", "http", "", "http");
    }
    void linksAreFollowed() {
        QFETCH(QString, link);
        QFETCH(QString, page);
        QFETCH(QString, opened);
        open();
        QLineEdit* edit = componentSearch();
        m_view->onConfigurePageToggled(BottlesConfigView::WineParameter);
        showAllHints();
        const QString help = hints()->page().section("href=\"http", 1).section('"', 0, 0);
        clickLink(link == "http" ? link + help : link);
        QTRY_VERIFY(shownPage() == page || !m_opened.isEmpty());
        QCOMPARE(m_opened.join(' ').contains(opened) && !m_opened.isEmpty(), !opened.isEmpty());
        QCOMPARE(edit->text(), QString(link.startsWith("component") ? "dotnet48" : ""));
    }

    void linksAreFollowedByKeys() {
        open();
        QLineEdit* edit = componentSearch();
        showAllHints();
        hints()->setFocus();
        for (int i = 0; i < 2; ++i)
            QTest::keyClick(hints(), Qt::Key_Tab);
        QTest::keyClick(hints(), Qt::Key_Return);
        QTRY_COMPARE(edit->text(), QString("mono9"));
        QVERIFY(m_view->isVisible());
    }

    void logIsBounded() {
        open();
        m_view->showLogs();
        frame()->append(QVector<LiveLogLine>(DebugLog::MaxLines + 7, {"x", false}));
        QCOMPARE(frame()->log()->store().lineCount(), DebugLog::MaxLines);
        QTRY_VERIFY(find("dropped_lines")->isVisible());
        m_view->slotsAppendLogs("y");
        QCOMPARE(frame()->log()->store().droppedLines(), 8);
    }

    void fontsAreFixed() {
        open();
        showAllHints();
        const int place = hints()->verticalScrollBar()->value();
        clickLink("fonts:simsun.ttc");
        QTRY_VERIFY(hints()->toPlainText().contains("Missing fonts has been fixed"));
        QVERIFY(QFileInfo(m_bottle.directory() + "/drive_c/windows/Fonts/simsun.ttc").isSymLink());
        QVERIFY(!hints()->page().contains("fonts:simsun.ttc"));
        QVERIFY(hints()->verticalScrollBar()->value() >= place);
    }

    void runnerIsShown() {
        open();
        QLineEdit* edit = componentSearch();
        auto* versions = find("wine_version_combobox")->findChild<QComboBox*>();
        QTRY_COMPARE(versions->count(), 2);
        m_view->slotsHandleLogsAnchorClicked(QUrl("setrunner:lumora-wine-staging"));
        QCOMPARE(versions->currentData().toString(), QString("lumora-wine-staging"));
        QCOMPARE(shownPage(), QString("Component Installation"));
        QCOMPARE(edit->text(), QString("lumora wine staging"));
        QVERIFY(m_service->calls("setRunner").isEmpty());
    }

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
        QTRY_VERIFY(lines().contains("0024:err:seen before"));
        m_bottle.write("logs/wine-notes.exe.txt", "0024:fixme:a\n");
        FailedStarts::instance()->mark(Bottle, Id, {"No window came up.", {}});
        LaunchedConfigWindow::open({Bottle, Id}, LaunchWindows::ConfigMode::Debugging, nullptr);
        QTRY_VERIFY(hints()->page().contains(NotComeUp));
    }

    void searchLooksThroughAllPages() {
        open();
        auto* edit = find<QLineEdit>("settings_search");
        const auto pageFor = [&](const QString& text) {
            edit->setText(text);
            return shownPage();
        };
        QCOMPARE(pageFor("log channel"), QString("Wine Parameter"));
        QCOMPARE(pageFor("task manager"), QString("Debugging Tools"));
        QCOMPARE(pageFor("memory"), QString("Basic Configuration"));
        QCOMPARE(pageFor("nowhere at all"), QString("Basic Configuration"));
    }

    void foundProgramIsAdded() {
        m_service->setJson(
            "listBottlesAllPrograms",
            QJsonArray{QJsonObject{{"id", Id}, {"name", "Notes"}, {"path", "C:\\notes.exe"}},
                       QJsonObject{{"id", "b"}, {"path", "C:\\Notes.exe"}, {"auto_discovered", true}},
                       QJsonObject{{"id", "c"}, {"path", "C:\\<b>.exe"}, {"auto_discovered", true}},
                       QJsonObject{{"id", "d"}, {"path", "C:\\"}, {"auto_discovered", true}}});
        open();
        const LogCapture log;
        m_view->onAddEntryButtonClicked();
        auto* dialog = m_view->findChild<ChooseExecutableDialog*>();
        QCOMPARE(dialog->title(), QString("Adding application shortcuts"));
        auto* list = dialog->findChild<QTreeView*>("executables_list");
        QTRY_COMPARE(list->model()->rowCount(), 2);
        QCOMPARE(log.count("Program already exists: "), 1);
        QCOMPARE(log.count("Append program: "), 2);
        QVERIFY(!(list->model()->index(0, 0).flags() & Qt::ItemIsEnabled));
        QCOMPARE(outOfReach(dialog), QString());
        QTest::keyClick(list, Qt::Key_Return);
        const QJsonArray sent = m_service->waitForCall("updateExternalProgram").arguments;
        QCOMPARE(QJsonDocument::fromJson(sent.at(1).toString().toUtf8()).object(),
                 (QJsonObject{{"id", "c"}, {"name", "<b>"}, {"path", "C:\\<b>.exe"}}));
    }

    /// The bus has no type for a record that is no text.
    void entrySyncReachesNobody() {
        open();
        m_service->clearCalls();
        m_view->syncCurrentAppEntry();
        m_view->slotsStopInstallingDeps();
        QCOMPARE(m_service->waitForCall("cancelInstallingDependency").arguments, QJsonArray{Bottle});
        QVERIFY(m_service->calls("updateExternalProgram").isEmpty());
    }
};

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    HintsWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "HintsWindowTest.moc"
