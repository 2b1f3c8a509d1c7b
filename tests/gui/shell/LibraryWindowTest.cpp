#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMenu>

#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/SearchEdit.h"
#include "gui/shell/LibraryFixture.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ProgramRuns.h"
#include "programs/ProgramStarts.h"
#include "programs/StarRating.h"
#include "shell/DropFrame.h"
#include "shell/library/LocalAppItemMenu.h"
#include "support/KeyWalk.h"

using ProgramMenu::Action;

namespace {

constexpr int RecordMs = 60000;  // a record asks tools what machine this is, for seconds on a busy one

QString record(const QString& name) {
    return QString(R"({"name":"%1"})").arg(name);
}

bool isPending() {
    return PendingWork::instance()->isPending();
}

}  // namespace

class LibraryWindowTest : public LibraryFixture {
    Q_OBJECT

    ProgramLibrary* library() const { return view()->library(); }
    QStringList shown() const {
        QStringList names;
        if (const ProgramGrid* grid = view()->shownGrid()) {
            for (const ProgramPtr& program : grid->programs())
                names << program->name;
        }
        return names;
    }
    QWidget* page(const char* name) const { return view()->findChild<QWidget*>(name); }
    /// The shown entries, those of sub-menus in brackets.
    QString entries(const QMenu* menu) const {
        QStringList texts;
        for (const QAction* action : menu->actions()) {
            if (action->isVisible() && !action->isSeparator())
                texts << action->text() + (action->menu() ? " (" + entries(action->menu()) + ")" : QString());
        }
        return texts.join(", ");
    }
    QMenu* openMenu(const QString& uuid) {
        const QSignalSpy ready(tile(uuid), &LocalAppItemWidget::menuReady);
        tile(uuid)->onBtnOptionClicked();
        return QTest::qWaitFor([&] { return ready.count() > 0; }) ? tile(uuid)->optionMenu() : nullptr;
    }
    /// Chooses the removing entry as the menu was when it was opened last.
    void remove(const QString& uuid, int button, const QString& text) {
        if (!question())
            tile(uuid)->action(Action::Remove)->trigger();
        const QPointer<Fenk::Dialog> dialog = question();
        QVERIFY(dialog);
        QCOMPARE(dialog->title(), QString("Important Information"));
        QCOMPARE(dialog->button(button)->text(), text);
        dialog->button(button)->click();
        QTRY_VERIFY(!dialog);
    }

private Q_SLOTS:
    void initTestCase() { LocalAppItemMenu::setLongestWait(60000); }

    void live() {
        open({summary("1", "b"), summary("10", "c10"), summary("2", "C2"), summary("3", "<i>a</i>")});
        QCOMPARE(shown(), QStringList({"<i>a</i>", "b", "C2", "c10"}));
        QVERIFY(tile("3")->toolTip().startsWith("<b>&lt;i&gt;a&lt;/i&gt;</b>"));
        view()->slotAppAdded("office", "4", record("ba"));
        QTRY_COMPARE(shown(), QStringList({"<i>a</i>", "b", "ba", "C2", "c10"}));
        const QPointer<LocalAppItemWidget> kept = tile("4");
        view()->slotAppUpdated("office", "4", record(R"(z\n z)"));
        QTRY_COMPARE(shown().last(), QString("z z"));
        QCOMPARE(tile("4"), kept.data());
        view()->slotAppAdded("office", "../../x", record("evil"));
        view()->slotAppAdded("office", "5", "no record");
        view()->slotAppRemoved("office", "1");
        QTRY_COMPARE(shown(), QStringList({"<i>a</i>", "C2", "c10", "z z"}));
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_VERIFY(page("applist_empty")->isVisible());
    }

    void signalsWhileLoading() {
        m_service->setHeld("listAllPrograms",
                           QJsonDocument(QJsonArray{summary("1", "old"), summary("2", "gone")}).toJson());
        openUntil(State::Loading);
        m_service->waitForCall("listAllPrograms");
        view()->slotAppUpdated("office", "1", record("new"));
        view()->slotAppAdded("office", "3", record("third"));
        view()->slotAppRemoved("office", "2");
        m_service->release();
        QTRY_COMPARE(shown(), QStringList({"new", "third"}));
    }

    void failedList() {
        m_service->setVanish("listAllPrograms");
        openUntil(State::Loading);
        m_service->waitUntilGone();
        QTRY_COMPARE(library()->state(), State::Failed);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        m_service->setError("listAllPrograms", "the disk is on fire");
        QVERIFY(m_service->takeName());  // which asks for the list
        m_service->waitForCall("listAllPrograms");
        QTRY_VERIFY(page("applist_failed")->isVisible());
        m_service->setJson("listAllPrograms", QJsonArray{summary("1", "a")});
        page("applist_failed")->findChild<QAbstractButton*>()->click();
        QTRY_COMPARE(shown(), QStringList("a"));
    }

    void search() {
        open({summary("1", "微信"), summary("2", "企业微信"), summary("3", "Wax"), summary("4", "other")});
        view()->focusPrograms();
        const QPointer<QWidget> before = QApplication::focusWidget();
        press(Qt::Key_W);
        press(Qt::Key_X);
        QTRY_COMPARE(shown(), QStringList({"Wax", "企业微信", "微信"}));
        view()->slotAppAdded("office", "5", record("Wox"));
        QTRY_COMPARE(shown().size(), 4);
        press(Qt::Key_Escape);
        QTRY_COMPARE(shown().size(), 5);
        QTRY_COMPARE(QApplication::focusWidget(), before);
        QTest::keyClicks(QApplication::focusWidget(), "wx");
        press(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), tile("3"));
        QTest::keyClicks(QApplication::focusWidget(), "q");
        QVERIFY(page("applist_nothing_found")->isVisible());
    }

    void manyTiles() {
        QJsonArray programs;
        for (int i = 0; i < 2000; ++i)
            programs.append(summary(QString::number(i), QString("Program %1").arg(i)));
        open(programs);
        QTRY_VERIFY(tile("0"));
        view()->focusPrograms();
        press(Qt::Key_Right);
        press(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), tile("6"));
        press(Qt::Key_End);
        QCOMPARE(QApplication::focusWidget(), tile("1999"));
        view()->slotAppRemoved("office", "1999");
        QTRY_VERIFY(tile("1998"));
        QTRY_COMPARE(QApplication::focusWidget(), tile("1998"));
        QTRY_VERIFY(view()->findChildren<LocalAppItemWidget*>().size() < 60);
        const QWidget* viewport = view()->shownGrid()->viewport();
        QVERIFY(
            viewport->rect().contains(QRect(tile("1998")->mapTo(viewport, QPoint()), tile("1998")->size())));
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_COMPARE(QApplication::focusWidget()->objectName(), QString("welcome_openbtn"));
    }

    void menu() {
        m_home.write("bottle/assosiate.json", R"({".txt":{"progid":"txt"}})");
        setBottle({"1"}, m_home.path() + "/bottle");
        m_service->setText("getEmulators", R"({"installed":{"box":"b"},"using":"box"})");
        open({summary("1", "a")});
        const QMenu* menu = openMenu("1");
        QVERIFY(menu && menu->isVisible());
        QCOMPARE(menu->accessibleName(), QString("appitem_option_menu"));
        // Without the entries that open a window which is not there.
        QCOMPARE(entries(menu),
                 QString("Edit Details, Quick Tools (Open in Terminal, Open folder of app, Open c-drive, "
                         "File Associations, Registry Editor, Importing the registry, Internet Settings, "
                         "Quit All Apps), Translator (box), Back Up…, Create Desktop Icon, Uninstall"));
        tile("1")->optionMenu()->hide();
        LaunchWindows& windows = LaunchWindows::instance();
        windows.configuration = [](const ProgramRef&, LaunchWindows::ConfigMode, QWidget*) {
            return nullptr;
        };
        windows.feedback = [](const ProgramRef&, const QString&, const QString&, QWidget*) { return 0; };
        windows.packaging = windows.manifestExport = [](const ProgramRef&, QWidget*) {};
        openMenu("1");
        for (const Action which :
             {Action::AdvancedDebugging, Action::PackagedApps, Action::DumpManifest, Action::Feedback})
            QVERIFY2(tile("1")->action(which)->isVisible(), qPrintable(entries(menu)));
        tile("1")->optionMenu()->hide();
        tile("1")->action(Action::ImportRegistry)->trigger();
        const QPointer<QFileDialog> dialog = m_window->findChild<QFileDialog*>("import_registry_dialog");
        QVERIFY(dialog && dialog->isVisible());
        m_window.reset();
        QVERIFY(!dialog);
    }

    void menuOfSilentService() {
        m_service->setHeld("get", "{}");
        LocalAppItemMenu::setLongestWait(0);
        open({summary("1", "a")});
        QVERIFY(openMenu("1"));
        LocalAppItemMenu::setLongestWait(60000);
        QAction* removing = tile("1")->action(Action::Remove);
        QVERIFY(!removing->isEnabled() && removing->toolTip() != removing->text());
    }

    void removal() {
        setBottle({"1", "2"});
        open({summary("1", "a"), summary("2", "b")});
        for (const char* uuid : {"1", "2"}) {
            openMenu(uuid);
            tile(uuid)->optionMenu()->hide();
        }
        const auto removals = [this] { return m_service->calls("removeExternalProgram").size(); };
        QSignalSpy failed(AppItemWidgetStateManager::instance(), &AppItemWidgetStateManager::failed);
        remove("1", 0, "Cancel Delete");
        m_service->setError("Bottles.removeExternalProgram", "busy");
        remove("1", 1, "Confirm Delete");
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY(failed[0][1].toString().contains("still there"));
        QVERIFY(m_window->findChild<Fenk::FloatingMessage*>());
        // A bottle that is not known any more may hold nothing else.
        m_service->setBottle("office", {});
        remove("1", 1, "Confirm Delete");
        QTRY_COMPARE(failed.size(), 2);
        QCOMPARE(removals(), 1);
        setBottle({"1", "2"});
        m_service->setText("Bottles.removeExternalProgram", "");
        remove("1", 1, "Confirm Delete");
        QTRY_COMPARE(removals(), 2);
        // The menu of the other one was opened when there were two.
        setBottle({"2"});
        remove("2", 1, "Confirm Delete");
        QTRY_VERIFY(question());
        QCOMPARE(removals(), 2);
        setBottle({});
        m_service->setError("Bottles.delete", "busy");
        remove("2", 1, "Confirm Uninstall");
        QTRY_COMPARE(failed.size(), 3);
        QVERIFY(failed[2][1].toString().contains("container"));
        QCOMPARE(m_service->waitForCall("delete").arguments, QJsonArray({"office"}));
    }

    void startAndStop() {
        open({summary("1", "a")});
        const auto isRunning = [] { return ProgramRuns::instance()->isRunning("1"); };
        QSignalSpy failures(ProgramStarts::instance(), &ProgramStarts::failed);
        QAbstractButton* button = runButton("1");
        button->click();
        QVERIFY(isRunning() && isPending());
        QCOMPARE(button->text(), QString(" Quit"));
        QVERIFY(button->isVisible());
        button->click();  // before the service has told where the bottle is
        QVERIFY(!isRunning());
        QTRY_VERIFY(!isPending());
        tile("1")->onStartButtonClicked(false);
        QVERIFY(m_service->emitSignal("program_deleted", "ss", {"office", "1"}));
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning() && !isPending(), RecordMs);
        // A bottle that can't be reached, and one that the launch script does not know.
        for (const QString& path : {QString(), m_home.path()}) {
            m_service->setHeld("get", "{\"Path\":\"" + path + "\"}");
            const QSignalSpy exits(BottlesConfig::instance(), &BottlesConfig::program_exited);
            m_service->clearCalls();
            failures.clear();
            tile("1")->onStartButtonClicked(false);
            tile("1")->onStartButtonClicked(false);
            m_service->waitForCall("get");
            QVERIFY(m_service->emitSignal("program_exited", "s", {"1"}));  // of an earlier run
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
        ProgramStarts::instance()->stop({"office", "1"});
        QCOMPARE(m_service->waitForCall("killProgram").arguments, QJsonArray({"office", "1"}));
        tile("1")->activate();
        QVERIFY(m_service->emitSignal("bottles_deleted", "s", {"office"}));
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning() && !isPending(), RecordMs);
    }

    void stars() {
        setBottle({"1"});
        open({summary("1", "a")});
        const auto shownStars = [this] { return library()->find({"office", "1"})->stars; };
        auto* rating = tile("1")->findChild<StarRating*>();
        QTest::mouseClick(rating, Qt::LeftButton, {}, {rating->width() - 2, rating->height() / 2});
        QTRY_VERIFY(m_window->findChild<Fenk::Dialog*>("applyscore_dialog"));
        QCOMPARE(shownStars(), 0);
        TestSupport::press(m_window->findChild<Fenk::Dialog*>("applyscore_dialog"), Qt::Key_Return);
        QCOMPARE(shownStars(), 5);
        const auto stored = m_service->waitForCall("updateExternalProgram").arguments.at(1).toString();
        QVERIFY(stored.contains("\"stars\":5"));
        m_service->setError("Bottles.updateExternalProgram", "busy");
        tile("1")->submitScore(3, true);
        QCOMPARE(shownStars(), 3);
        QTRY_COMPARE(shownStars(), 0);  // as in the service's list
    }

    void setups() {
        auto* states = AppItemWidgetStateManager::instance();
        const QString file = m_home.write("a.yml", "x");
        states->onSetupingYmlDone("1", file, true);
        QVERIFY(QFile::exists(file));
        states->startSetup("1");
        QVERIFY(states->isSettingUp() && isPending());
        states->onSetupingYmlDone("1", file, true);
        QVERIFY(!states->isSettingUp() && !isPending() && !QFile::exists(file));
    }

    void addProgram() {
        open({summary("1", "Ledger"), summary("2", "Harbour")});
        QCOMPARE(TestSupport::outOfReach(m_window.get()), QString());
        view()->focusPrograms();
        const QPointer<QWidget> before = QApplication::focusWidget();
        const QString file = m_home.write("downloads/setup.exe", "x");
        for (const bool again : {false, true}) {
            TestSupport::press(m_window.get(), Qt::Key_O, Qt::ControlModifier);
            const QPointer<QFileDialog> dialog = m_window->findChild<QFileDialog*>("applistview_adddialog");
            QVERIFY(dialog && dialog->isVisible());
            QCOMPARE(dialog->directory() == QFileInfo(file).dir(), again);
            Q_EMIT dialog->fileSelected(file);
            dialog->close();
            QTRY_VERIFY(!dialog);
            m_window->activateWindow();
            QTRY_COMPARE(QApplication::focusWidget(), before);
        }
    }
};

int main(int argc, char** argv) {
    return runWindowTest<LibraryWindowTest>(argc, argv);
}
#include "LibraryWindowTest.moc"
