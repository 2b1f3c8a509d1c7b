#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTreeView>

#include "fenk/window/Application.h"
#include "gui/hints/HintsFixture.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"

using namespace TestSupport;

/// The links of the hints, the search through all pages, and the dialog that adds a program.
class HintsWindowTest : public QObject, HintsFixture {
    Q_OBJECT

    QStringList m_opened;

    QLineEdit* componentSearch() const { return find<QLineEdit>("components_search_edit"); }
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
        using Kind = Hint::Kind;
        m_view->showLogs();
        frame()->showHints({{Kind::DotNetRuntime, {"dotnet48", "mono9"}},
                            {Kind::MissingFonts, {"simsun.ttc"}},
                            {Kind::GameGraphics, {}},
                            {Kind::OtherWineOrTranslator, {}}});
    }

private Q_SLOTS:
    void onOpened(const QUrl& url) { m_opened << url.toString(); }

    void initTestCase() {
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::setUrlHandler(scheme, this, "onOpened");
        startService();
    }
    void init() {
        m_opened.clear();
        makeBottle();
    }
    void cleanup() { closeWindow(); }
    void cleanupTestCase() { m_service.reset(); }

    void linksAreFollowed_data() {
        const Table<QString, QString, QString> row("link", "page", "opened");
        row("component", "component:dotnet48", "Component Installation", "");
        row("page", "tab:0", "Basic Configuration", "");
        row("second page", "tab:1", "Wine Parameter", "");
        row("folder", "{drive_c}/windows/Fonts", "", "drive_c/windows/Fonts");
        row("help", "http", "", "http");
    }
    void linksAreFollowed() {
        QFETCH(QString, link);
        QFETCH(QString, page);
        QFETCH(QString, opened);
        open();
        QLineEdit* edit = componentSearch();
        m_view->onConfigurePageToggled(BottlesConfigView::DebuggingTools);
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

    /// Another program is selected, as by a launch, while the menu is open.
    void menuActsOnItsProgram() {
        m_service->setBottle(
            Bottle, {{"Path", m_bottle.directory()},
                     {"External_Programs", QJsonObject{{Id, m_program}, {"z", QJsonObject{{"name", "z"}}}}}});
        open();
        m_view->onAppEntryBtnRightClicked(m_view->findChild<AppEntryButton*>());
        auto* menu = find<QMenu>("entry_menu");
        m_view->selectProgramById("z");
        QCOMPARE(m_view->title(), QString("Configuration of z"));
        menu->actions().last()->trigger();
        QCOMPARE(m_view->title(), QString("Configuration of Notes"));
        QVERIFY(find("delete_entry_question"));
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
        const QSignalSpy chosen(dialog, &ChooseExecutableDialog::programChosen);
        QTest::keyClick(list, Qt::Key_Return);
        QCOMPARE(chosen.count(), 1);
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
