#include <QAbstractButton>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "launch/LaunchWindows.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ProgramRuns.h"
#include "programs/ProgramStarts.h"
#include "shell/DropFrame.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"
#include "shell/library/LocalAppItemMenu.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/ProgramGrid.h"
#include "shell/library/ProgramLibrary.h"
#include "shell/properties/AppPropertyDlg.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

using ProgramMenu::Action;
using State = ProgramLibrary::State;

namespace {

constexpr int RecordMs = 60000;  // a record asks tools what machine this is, for seconds on a busy one

QString uuid(int number) {
    return QString("00000000-0000-4000-8000-%1").arg(number, 12, 10, QChar('0'));
}

QJsonObject summary(int number, const QString& name, const QString& bottle = "office") {
    return {{"bottle_name", bottle}, {"uuid", uuid(number)}, {"name", name}, {"icon", ""}, {"stars", 2}};
}

QString record(const QString& name) {
    return QString::fromUtf8(QJsonDocument(QJsonObject{{"name", name}}).toJson(QJsonDocument::Compact));
}

}  // namespace

class LibraryWindowTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<Mainwindow> m_window;

    AppLocalView* view() const { return m_window->indexView()->localView(); }
    ProgramLibrary* library() const { return view()->library(); }
    QStringList shown() const {
        QStringList names;
        if (const ProgramGrid* grid = view()->shownGrid()) {
            for (const ProgramPtr& program : grid->programs())
                names << program->name;
        }
        return names;
    }
    LocalAppItemWidget* tile(int number, const QString& bottle = "office") const {
        return view()->shownGrid()->tile({bottle, uuid(number)});
    }
    QWidget* page(const char* name) const { return view()->findChild<QWidget*>(name); }
    void open(const QJsonArray& programs) {
        m_service->setJson("listAllPrograms", programs);
        openWith(State::Ready);
    }
    void openWith(State state) {
        m_window = std::make_unique<Mainwindow>();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(view());
        QTRY_COMPARE(library()->state(), state);
    }
    /// The menu as the user sees it: the shown entries, those of the sub-menu in brackets.
    QStringList entries(const QMenu* menu) const {
        QStringList texts;
        for (const QAction* action : menu->actions()) {
            if (!action->isVisible() || action->isSeparator())
                continue;
            texts << action->text();
            if (action->menu())
                texts << "(" + entries(action->menu()).join(", ") + ")";
        }
        return texts;
    }
    QMenu* openMenu(LocalAppItemWidget* item) {
        const QSignalSpy ready(item, &LocalAppItemWidget::menuReady);
        item->onBtnOptionClicked();
        return QTest::qWaitFor([&] { return ready.count() > 0; }) ? item->optionMenu() : nullptr;
    }

private Q_SLOTS:
    void initTestCase() {
        QApplication::setDoubleClickInterval(0);  // the tests click as fast as they can
        LocalAppItemMenu::setLongestWait(60000);
    }

    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
    }
    void cleanup() {
        m_window.reset();
        m_service.reset();
        LaunchWindows::instance() = {};
    }

    void live() {
        open({summary(1, "b"), summary(10, "c10"), summary(2, "C2"), summary(3, "<i>a</i>")});
        QCOMPARE(shown(), QStringList({"<i>a</i>", "b", "C2", "c10"}));
        QVERIFY(tile(3)->toolTip().startsWith("<b>&lt;i&gt;a&lt;/i&gt;</b>"));
        view()->slotAppAdded("office", uuid(4), record("ba"));
        QTRY_COMPARE(shown(), QStringList({"<i>a</i>", "b", "ba", "C2", "c10"}));
        const QPointer<LocalAppItemWidget> kept = tile(4);
        view()->slotAppUpdated("office", uuid(4), record("z\n z"));
        QTRY_COMPARE(shown().last(), QString("z z"));
        QCOMPARE(tile(4), kept.data());
        view()->slotAppAdded("office", "../../x", record("evil"));
        view()->slotAppAdded("office", uuid(5), "no record");
        view()->slotAppRemoved("office", uuid(1));
        QTRY_COMPARE(shown(), QStringList({"<i>a</i>", "C2", "c10", "z z"}));
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_VERIFY(page("applist_empty")->isVisible());
    }

    void signalsWhileListIsOnItsWay() {
        m_service->setHeld("listAllPrograms",
                           QJsonDocument(QJsonArray{summary(1, "old"), summary(2, "gone")}).toJson());
        openWith(State::Loading);
        m_service->waitForCall("listAllPrograms");
        view()->slotAppUpdated("office", uuid(1), record("new"));
        view()->slotAppAdded("office", uuid(3), record("third"));
        view()->slotAppRemoved("office", uuid(2));
        m_service->release();
        QTRY_COMPARE(shown(), QStringList({"new", "third"}));
    }

    void refusedThenRetried() {
        m_service->setError("listAllPrograms", "the disk is on fire");
        openWith(State::Failed);
        QVERIFY(page("applist_failed")->isVisible());
        m_service->setJson("listAllPrograms", QJsonArray{summary(1, "a")});
        page("applist_failed")->findChild<QAbstractButton*>()->click();
        QTRY_COMPARE(shown(), QStringList("a"));
    }

    void serviceGoesAndComesBack() {
        m_service->setVanish("listAllPrograms");
        openWith(State::Loading);
        m_service->waitUntilGone();
        // Nobody is there at the next attempt either.
        QTRY_COMPARE(library()->state(), State::Failed);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        m_service->setJson("listAllPrograms", QJsonArray{summary(1, "a")});
        QVERIFY(m_service->takeName());
        QTRY_COMPARE(shown(), QStringList("a"));
    }

    void search() {
        open({summary(1, "微信"), summary(2, "企业微信"), summary(3, "Wax"), summary(4, "other")});
        QTest::keyClick(m_window.get(), Qt::Key_W);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
        QCOMPARE(m_window->findChild<Fenk::SearchEdit*>()->text(), QString("wx"));
        QTRY_COMPARE(shown(), QStringList({"Wax", "企业微信", "微信"}));
        view()->slotAppAdded("office", uuid(5), record("Wox"));
        QTRY_COMPARE(shown().size(), 4);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), tile(3));
        QTest::keyClicks(QApplication::focusWidget(), "q");
        QVERIFY(page("applist_nothing_found")->isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QCOMPARE(shown().size(), 5);
    }

    void manyTiles() {
        QJsonArray programs;
        for (int i = 0; i < 2000; ++i)
            programs.append(summary(i, QString("Program %1").arg(i)));
        open(programs);
        const auto tiles = [this] { return view()->findChildren<LocalAppItemWidget*>(); };
        QTRY_VERIFY(tile(0));
        view()->focusPrograms();
        QCOMPARE(QApplication::focusWidget(), tile(0));
        for (const int key : {Qt::Key_Right, Qt::Key_Down})
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
        QCOMPARE(QApplication::focusWidget(), tile(6));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
        QCOMPARE(QApplication::focusWidget(), tile(1999));
        view()->slotAppRemoved("office", uuid(1999));
        QTRY_VERIFY(tile(1998));
        QTRY_COMPARE(QApplication::focusWidget(), tile(1998));
        QTRY_VERIFY2(tiles().size() < 60, "tiles out of sight are gone");
        QVERIFY(view()->shownGrid()->viewport()->rect().contains(
            QRect(tile(1998)->mapTo(view()->shownGrid()->viewport(), QPoint()), tile(1998)->size())));
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_VERIFY(qobject_cast<QAbstractButton*>(QApplication::focusWidget()));
        QVERIFY2(view()->isAncestorOf(QApplication::focusWidget()), "the way on is the one to add programs");
    }

    void menu_data() {
        const Table<QString, QString, int, QString, bool, QString> row("bottle", "runner", "programs",
                                                                       "emulators", "extras", "texts");
        const QString tools =
            "(Open in Terminal, Open folder of app, Open c-drive, %1Registry Editor, "
            "Importing the registry, Internet Settings, Quit All Apps)";
        const QString head = "Edit Details, Advanced Debugging, Quick Tools, ";
        row("shared", "public/x", "wine", 1, "{}", false,
            "Edit Details, Create Desktop Icon, Feedback, Uninstall");
        row("ordinary", "office", "wine", 2, "{}", false,
            head + tools.arg("") + ", Packaged apps, Dump Manifest, Create Desktop Icon, Feedback, Delete");
        row("everything", "office", "wine", 1, R"({"installed":{"box":"b"},"using":"box"})", true,
            head + tools.arg("File Associations, ") +
                ", Translator, (box), Packaged apps, Dump Manifest, Feedback, Uninstall");
        row("proton from the store", "program-0123abcd", "ge-proton9", 1, "{}", false,
            head + tools.arg("") + ", Create Desktop Icon, Feedback, Uninstall");
        row("unknown bottle", "lost", "", -1, "{}", false,
            head + tools.arg("") + ", Dump Manifest, Create Desktop Icon, Feedback, Delete");
    }
    void menu() {
        QFETCH(QString, bottle);
        QFETCH(QString, runner);
        QFETCH(int, programs);
        QFETCH(QString, emulators);
        QFETCH(bool, extras);
        QFETCH(QString, texts);
        if (extras) {
            m_home.write("bottle/assosiate.json", R"({".txt":{"progid":"txt"}})");
            m_home.write("Desktop/office-" + uuid(1) + ".desktop", "");
        }
        QJsonObject external;
        for (int i = 0; i < programs; ++i)
            external.insert(uuid(i + 1), QJsonObject{{"name", "a"}});
        if (programs >= 0)
            m_service->setBottle(bottle, {{"Path", m_home.path() + (extras ? "/bottle" : "/none")},
                                          {"Runner", runner},
                                          {"External_Programs", external}});
        m_service->setText("getEmulators", emulators);
        LaunchWindows& windows = LaunchWindows::instance();
        windows.configuration = [](const ProgramRef&, LaunchWindows::ConfigMode, QWidget*) {
            return nullptr;
        };
        windows.feedback = [](const ProgramRef&, const QString&, const QString&, QWidget*) { return 0; };
        windows.packaging = windows.manifestExport = [](const ProgramRef&, QWidget*) {};
        open({summary(1, "a", bottle)});
        LocalAppItemWidget* item = tile(1, bottle);
        const QMenu* menu = openMenu(item);
        QVERIFY(menu && menu->isVisible());
        QCOMPARE(menu->accessibleName(), QString("appitem_option_menu"));
        QCOMPARE(entries(menu).join(", "), texts);
        for (const QAction* entry : item->findChildren<QAction*>())
            QVERIFY2(entry->isEnabled() || !entry->isVisible() || entry->toolTip() != entry->text(),
                     qPrintable(entry->text()));
        item->action(Action::EditDetails)->trigger();
        auto* properties = m_window->findChild<AppPropertyDlg*>();
        QVERIFY(properties && properties->isVisible());
        delete properties;
        item->optionMenu()->hide();
        windows = {};
        openMenu(item);
        for (const Action which :
             {Action::AdvancedDebugging, Action::PackagedApps, Action::DumpManifest, Action::Feedback})
            QVERIFY2(!item->action(which)->isVisible(), qPrintable(item->action(which)->text()));
        QFile::remove(m_home.path() + "/Desktop/office-" + uuid(1) + ".desktop");
    }

    void removal_data() {
        const Table<int, QString> row("programs", "word");
        row("the last one", 1, "Uninstall");
        row("one of two", 2, "Delete");
    }
    void removal() {
        QFETCH(int, programs);
        QFETCH(QString, word);
        QJsonObject external;
        for (int i = 0; i < programs; ++i)
            external.insert(uuid(i + 1), QJsonObject{{"name", "a"}});
        m_service->setBottle("office", {{"External_Programs", external}});
        open({summary(1, "a")});
        openMenu(tile(1));
        tile(1)->optionMenu()->hide();
        for (const QString& answer : {QString("Cancel "), QString("Confirm ")}) {
            tile(1)->action(Action::Remove)->trigger();
            auto* dialog = m_window->findChild<Fenk::Dialog*>("removal_question");
            QVERIFY(dialog);
            QCOMPARE(dialog->title(), QString("Important Information"));
            const int index = answer == "Cancel " ? 0 : 1;
            QCOMPARE(dialog->button(index)->text(), answer + word);
            const QPointer<QWidget> open = dialog;
            dialog->button(index)->click();
            QTRY_VERIFY(!open);
        }
        QCOMPARE(m_service->waitForCall("removeExternalProgram").arguments, QJsonArray({"office", uuid(1)}));
        QCOMPARE(m_service->calls("removeExternalProgram").size(), 1);
        // What is refused is told: the program's removal, or the bottle's.
        QSignalSpy failed(AppItemWidgetStateManager::instance(), &AppItemWidgetStateManager::failed);
        if (programs == 1) {
            m_service->setBottle("office", {{"External_Programs", QJsonObject()}});
            m_service->setError("Bottles.delete", "busy");
        } else {
            m_service->setError("Bottles.removeExternalProgram", "busy");
        }
        tile(1)->action(Action::Remove)->trigger();
        m_window->findChild<Fenk::Dialog*>("removal_question")->button(1)->click();
        QTRY_COMPARE(failed.size(), 1);
        QTRY_VERIFY(!m_window->findChild<Fenk::Dialog*>("removal_question"));
        QVERIFY(failed[0][1].toString().contains(programs == 1 ? "container" : "still there"));
        QVERIFY(m_window->findChild<Fenk::FloatingMessage*>());
        if (programs == 1)
            return;
        // Of a bottle that is not known any more it may be the last one.
        m_service->setBottle("office", {});
        tile(1)->action(Action::Remove)->trigger();
        m_window->findChild<Fenk::Dialog*>("removal_question")->button(1)->click();
        QTRY_COMPARE(failed.size(), 2);
        QCOMPARE(m_service->calls("removeExternalProgram").size(), 2);
    }

    void removalOfLastTwo() {
        const auto setPrograms = [this](int first, int last) {
            QJsonObject external;
            for (int i = first; i <= last; ++i)
                external.insert(uuid(i), QJsonObject{{"name", "a"}});
            m_service->setBottle("office", {{"External_Programs", external}});
        };
        const auto confirm = [this](int number, const QString& word) {
            QPointer<Fenk::Dialog> dialog;
            QTRY_VERIFY(dialog = m_window->findChild<Fenk::Dialog*>("removal_question"));
            QCOMPARE(dialog->button(1)->text(), "Confirm " + word);
            dialog->button(1)->click();
            QTRY_VERIFY(!dialog);
            QTRY_COMPARE(m_service->calls("removeExternalProgram").size(), number);
        };
        setPrograms(1, 2);
        open({summary(1, "a"), summary(2, "b")});
        for (const int number : {1, 2}) {
            openMenu(tile(number));
            tile(number)->optionMenu()->hide();
        }
        tile(1)->action(Action::Remove)->trigger();
        confirm(1, "Delete");
        setPrograms(2, 2);
        // Its menu still knows of two.
        tile(2)->action(Action::Remove)->trigger();
        confirm(1, "Delete");
        QTRY_VERIFY(m_window->findChild<Fenk::Dialog*>("removal_question"));
        setPrograms(1, 0);
        confirm(2, "Uninstall");
        QCOMPARE(m_service->waitForCall("delete").arguments, QJsonArray({"office"}));
    }

    void registryQuestionGoesWithItsWindow() {
        open({summary(1, "a")});
        openMenu(tile(1));
        tile(1)->optionMenu()->hide();
        tile(1)->action(Action::ImportRegistry)->trigger();
        const QPointer<QFileDialog> dialog = m_window->findChild<QFileDialog*>("import_registry_dialog");
        QVERIFY(dialog && dialog->isVisible());
        m_window.reset();
        QVERIFY(!dialog);
    }

    void desktopIcon_data() {
        const Table<bool> row("hasDesktop");
        row("desktop", true);
        row("no desktop", false);
    }
    void desktopIcon() {
        QFETCH(bool, hasDesktop);
        const QString file = m_home.path() + "/Desktop/office-" + uuid(1) + ".desktop";
        open({summary(1, "a")});
        if (hasDesktop)
            m_home.write("Desktop/office-" + uuid(1) + ".desktop", "");
        const QSignalSpy told(tile(1), &LocalAppItemWidget::message);
        tile(1)->oncreateDesktopFileAction();
        QTRY_COMPARE(told.count(), 1);
        QCOMPARE(told[0][0].toString().contains("on the desktop"), hasDesktop);
        QFile::remove(file);
    }

    void startAndStop() {
        open({summary(1, "a")});
        auto* states = ProgramStarts::instance();
        const auto isRunning = [] { return ProgramRuns::instance()->isRunning(uuid(1)); };
        const auto isPending = [] { return PendingWork::instance()->isPending(); };
        QSignalSpy failures(states, &ProgramStarts::failed);
        QAbstractButton* button = nullptr;
        for (auto* part : tile(1)->findChildren<QAbstractButton*>()) {
            if (part->accessibleName() == "appitem_running_state")
                button = part;
        }
        QVERIFY(button);
        button->click();
        QVERIFY(isRunning() && isPending());
        QCOMPARE(button->text(), QString(" Quit"));
        QVERIFY(button->isVisible());
        button->click();  // before the service has told where the bottle is
        QVERIFY(!isRunning());
        QTRY_VERIFY(!isPending());
        tile(1)->onStartButtonClicked(false);
        QVERIFY(m_service->emitSignal("program_deleted", "ss", {"office", uuid(1)}));
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning() && !isPending(), RecordMs);
        // A bottle that can't be reached, and one that the launch script does not know.
        for (const QString& path : {QString(), m_home.path()}) {
            m_service->setHeld("get", "{\"Path\":\"" + path + "\"}");
            const QSignalSpy exits(BottlesConfig::instance(), &BottlesConfig::program_exited);
            m_service->clearCalls();
            failures.clear();
            tile(1)->onStartButtonClicked(false);
            tile(1)->onStartButtonClicked(false);
            m_service->waitForCall("get");
            QVERIFY(m_service->emitSignal("program_exited", "s", {uuid(1)}));  // of the time before
            QTRY_COMPARE(exits.count(), 1);
            QVERIFY(isRunning());
            QCOMPARE(m_service->calls("get").size(), 1);
            QCOMPARE(m_service->release(), 1);
            QVERIFY(failures.count() || failures.wait());
            QVERIFY(!isRunning());
            // The record asks once more.
            QTRY_VERIFY_WITH_TIMEOUT(m_service->release() >= 0 && !isPending(), RecordMs);
            QCOMPARE(button->text(), QString("Repair"));
        }
        states->stop({"office", uuid(1)});
        QCOMPARE(m_service->waitForCall("killProgram").arguments, QJsonArray({"office", uuid(1)}));
        QCOMPARE(m_service->calls("killProgram").size(), 1);
        tile(1)->activate();
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning() && !isPending(), RecordMs);
    }

    void stars() {
        m_service->setBottle("office", {{"External_Programs", QJsonObject{{uuid(1), QJsonObject()}}}});
        open({summary(1, "a")});
        tile(1)->submitScore(5, true);
        QCOMPARE(library()->find({"office", uuid(1)})->stars, 5);
        QVERIFY(m_service->waitForCall("updateExternalProgram")
                    .arguments.at(1)
                    .toString()
                    .contains("\"stars\":5"));
        m_service->setError("Bottles.updateExternalProgram", "busy");
        tile(1)->submitScore(3, true);
        QCOMPARE(library()->find({"office", uuid(1)})->stars, 3);
        QTRY_COMPARE(library()->find({"office", uuid(1)})->stars, 2);  // as the bottle has it
    }

    void setups() {
        auto* states = AppItemWidgetStateManager::instance();
        const QString file = m_home.write("a.yml", "x");
        states->onSetupingYmlDone("1", file, true);
        QVERIFY(QFile::exists(file));
        states->startSetup("1");
        QVERIFY(states->isSettingUp());
        states->onSetupingYmlDone("1", file, true);
        QVERIFY(!states->isSettingUp());
        QVERIFY(!QFile::exists(file));
    }

    void drop_data() {
        const Table<QString, bool> row("file", "taken");
        row("program", "Setup.EXE", true);
        row("batch", "a.bat", true);
        row("document", "a.txt", false);
    }
    void drop() {
        QFETCH(QString, file);
        QFETCH(bool, taken);
        open({});
        const QSignalSpy opened(m_window.get(), &Mainwindow::openRequested);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_home.write(file, "x"))});
        QDragEnterEvent enter({400, 400}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &enter);
        QCOMPARE(enter.isAccepted(), taken);
        QCOMPARE(m_window->findChild<DropFrame*>()->isVisible(), taken);
        QDropEvent drop({400, 400}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &drop);
        QCOMPARE(opened.count(), int(taken));
        QVERIFY(!m_window->findChild<DropFrame*>()->isVisible());
    }

    void keys() {
        open({summary(1, "Ledger"), summary(2, "Harbour")});
        QCOMPARE(TestSupport::outOfReach(m_window.get()), QString());
        const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
            TestSupport::press(m_window.get(), key, modifiers);
        };
        // A search steps back to where it was begun.
        view()->focusPrograms();
        const QPointer<QWidget> before = QApplication::focusWidget();
        press(Qt::Key_L);
        QTRY_COMPARE(shown(), QStringList("Ledger"));
        press(Qt::Key_Escape);
        QTRY_COMPARE(shown().size(), 2);
        QTRY_COMPARE(QApplication::focusWidget(), before);
        const QString file = m_home.write("downloads/setup.exe", "x");
        for (const bool again : {false, true}) {
            press(Qt::Key_O, Qt::ControlModifier);
            const QPointer<QFileDialog> dialog = m_window->findChild<QFileDialog*>("applistview_adddialog");
            QVERIFY(dialog && dialog->isVisible());
            QCOMPARE(dialog->directory() == QFileInfo(file).dir(), again);
            Q_EMIT dialog->fileSelected(file);
            dialog->close();
            QTRY_VERIFY(!dialog);
            QCOMPARE(m_window->focusWidget(), before);
            m_window->activateWindow();
            QTRY_COMPARE(QApplication::focusWidget(), before);
        }
    }
};

int main(int argc, char** argv) {
    // The application asks for the bus when it is made.
    const TestSupport::PrivateBus bus;
    Fenk::Application app(argc, argv);
    LibraryWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "LibraryWindowTest.moc"
