#include <QAbstractButton>
#include <QMenu>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "launch/LaunchWindows.h"
#include "launch/records/FailedStarts.h"
#include "programs/ProgramRuns.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/ProgramGrid.h"
#include "shell/library/ProgramLibrary.h"
#include "shell/properties/AppPropertyDlg.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

/// What a tile shows of its program (running, failed) and what keys do on it.
class TileStatesTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<Mainwindow> m_window;

    AppLocalView* view() const { return m_window->indexView()->localView(); }
    LocalAppItemWidget* tile(const QString& uuid) const {
        return view()->shownGrid()->tile({"office", uuid});
    }
    QAbstractButton* runButton(const QString& uuid) const {
        return part<QAbstractButton>(uuid, "appitem_running_state");
    }
    template <class Part>
    Part* part(const QString& uuid, const QString& name) const {
        for (auto* found : tile(uuid)->findChildren<Part*>()) {
            if (found->accessibleName() == name)
                return found;
        }
        return nullptr;
    }
    void setRunning(const QStringList& uuids) {
        QJsonArray running;
        for (const QString& uuid : uuids)
            running.append(QJsonObject{{"bottle", "office"}, {"program", uuid}, {"pids", QJsonArray{1}}});
        m_service->setJson("Programs.running", running);
    }
    bool tell(const QString& signal, const QString& uuid, const QString& bottle = "office") {
        return m_service->emitSignal("/com/lumora/Manager/Programs", "com.lumora.Manager.Programs", signal,
                                     "ss", {bottle, uuid});
    }
    void open() {
        QJsonArray programs;
        QJsonObject records;
        for (const char* uuid : {"a", "b"}) {
            programs.append(QJsonObject{{"bottle_name", "office"}, {"uuid", uuid}, {"name", uuid}});
            records.insert(uuid, QJsonObject{{"name", uuid}});
        }
        m_service->setJson("listAllPrograms", programs);
        m_service->setBottle("office", {{"Path", m_home.path()}, {"External_Programs", records}});
        m_window = std::make_unique<Mainwindow>();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(view() && view()->library()->state() == ProgramLibrary::State::Ready && tile("a"));
    }
    void press(int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); }

    /// This platform does not by itself.
    void backToWindow() {
        QTRY_VERIFY(!QApplication::activeModalWidget());
        QApplication::setActiveWindow(m_window.get());
    }

private Q_SLOTS:
    void init() {
        QApplication::setDoubleClickInterval(0);
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
    }
    void cleanup() {
        setRunning({});
        ProgramRuns::instance()->load();
        QTRY_VERIFY(!ProgramRuns::instance()->isRunning("a"));
        FailedStarts::instance()->clearBottle("office");
        LaunchWindows::instance() = {};
        m_window.reset();
        m_service.reset();
    }

    void runsThatOthersHaveStarted() {
        setRunning({"a"});
        open();
        QTRY_COMPARE(runButton("a")->text(), QString(" Quit"));
        QVERIFY(runButton("a")->isVisible());
        QCOMPARE(tile("a")->accessibleDescription(), QString("Running"));
        // Return asks where its window is, and starts nothing.
        tile("a")->setFocus();
        const int asked = m_service->calls("running").size();
        press(Qt::Key_Return);
        m_service->waitForCall("running", asked + 1);
        QVERIFY(m_service->calls("get").isEmpty());
        runButton("a")->click();
        QCOMPARE(m_service->waitForCall("killProgram").arguments, QJsonArray({"office", "a"}));
        QVERIFY(tell("ended", "a") && tell("started", "b") && tell("started", "b", "copy"));
        QTRY_COMPARE(runButton("b")->text(), QString(" Quit"));
        QVERIFY(runButton("a")->text().isEmpty());
        // The copy of a bottle has the same ids.
        QVERIFY(tell("ended", "b"));
        QTRY_VERIFY(runButton("b")->text().isEmpty());
        QVERIFY(ProgramRuns::instance()->isRunning("b"));
        // Another service knows better.
        m_service.reset();
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        setRunning({"a"});
        QVERIFY(m_service->takeName());
        QTRY_VERIFY(ProgramRuns::instance()->isRunning("a"));
        QVERIFY(!ProgramRuns::instance()->isRunning("b"));
    }

    void failedStart() {
        FailedStarts* failed = FailedStarts::instance();
        failed->mark("office", "a", {"It needs <b>x.dll</b>.", {"vcrun"}});
        const QString file = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
                             "/data/failed_starts.json";
        QVERIFY(TestSupport::readFile(file).contains("vcrun"));
        QStringList repaired;
        LaunchWindows::instance().repair = [&](const ProgramRef& ref, const QStringList& components) {
            repaired << ref.uuid + components.join(',');
        };
        open();
        QCOMPARE(runButton("a")->text(), QString("Repair"));
        QVERIFY(tile("a")->toolTip().contains("It needs &lt;b&gt;x.dll"));
        QCOMPARE(tile("a")->accessibleDescription(), QString("It needs <b>x.dll</b>."));
        runButton("a")->click();
        QCOMPARE(repaired, QStringList("avcrun"));
        QVERIFY(tell("started", "a"));
        QTRY_COMPARE(runButton("a")->text(), QString(" Quit"));
        QVERIFY(tell("ended", "a"));
        QTRY_COMPARE(runButton("a")->text(), QString("Repair"));
        failed->record("office", "a", {});
        QVERIFY(runButton("a")->text().isEmpty());
        QVERIFY(!TestSupport::readFile(file).contains("vcrun"));
    }

    void keys() {
        open();
        setRunning({"a"});
        QVERIFY(tell("started", "a"));
        QTRY_COMPARE(runButton("a")->text(), QString(" Quit"));
        tile("a")->setFocus();
        const QSignalSpy menu(tile("a"), &LocalAppItemWidget::menuReady);
        int opened = 0;
        // Return is for the part that has the focus.
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), runButton("a"));
        press(Qt::Key_Return);
        m_service->waitForCall("killProgram");
        auto* options = tile("a")->findChild<QAbstractButton*>("appitem_options");
        options->setFocus();
        for (const int key : {Qt::Key_Return, Qt::Key_F10}) {
            press(key);
            ++opened;
            QTRY_COMPARE(menu.count(), opened);
            QTest::keyClick(static_cast<QWidget*>(tile("a")->optionMenu()), Qt::Key_Escape);
        }
        // F2 edits the name, and the focus comes back.
        tile("b")->setFocus();
        press(Qt::Key_F2);
        QTRY_COMPARE(QApplication::focusWidget()->objectName(), QString("property_name_field"));
        QTest::keyClicks(QApplication::focusWidget(), "c");
        press(Qt::Key_Return);
        QVERIFY(m_service->waitForCall("updateExternalProgram").arguments.at(1).toString().contains("\"c\""));
        backToWindow();
        QCOMPARE(QApplication::focusWidget(), tile("b"));
        // Stars without a choice do nothing on Return; Delete asks; letters search.
        part<QWidget>("b", "Not rated")->setFocus();
        press(Qt::Key_Return);
        QVERIFY(!ProgramRuns::instance()->isRunning("b"));
        press(Qt::Key_Delete);
        QTRY_VERIFY(m_window->findChild<Fenk::Dialog*>("removal_question"));
        auto* question = m_window->findChild<Fenk::Dialog*>("removal_question");
        QVERIFY(QTest::qWaitForWindowActive(question));
        QCOMPARE(TestSupport::outOfReach(question), QString());
        TestSupport::press(question, Qt::Key_Escape);
        backToWindow();
        QVERIFY(tile("b")->isAncestorOf(QApplication::focusWidget()) || tile("b")->hasFocus());
        press(Qt::Key_B);
        QCOMPARE(m_window->findChild<Fenk::SearchEdit*>()->text(), QString("b"));
        // A search goes with the last program that it has found.
        view()->slotAppRemoved("office", "b");
        QTRY_COMPARE(m_window->findChild<Fenk::SearchEdit*>()->text(), QString());
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;
    Fenk::Application app(argc, argv);
    TileStatesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "TileStatesTest.moc"
