#include <QLabel>
#include <QMenu>

#include "fenk/controls/SearchEdit.h"
#include "gui/shell/LibraryFixture.h"
#include "launch/records/FailedStarts.h"
#include "programs/OrphanedBottles.h"
#include "programs/ProgramRuns.h"
#include "programs/StarRating.h"
#include "support/KeyWalk.h"

/// What a tile shows of its program (running, failed) and what keys do on it.
class TileStatesTest : public LibraryFixture {
    Q_OBJECT

    void setRunning(const QStringList& uuids) {
        QJsonArray running;
        for (const QString& uuid : uuids)
            running.append(QJsonObject{{"bottle", "office"}, {"program", uuid}, {"pids", QJsonArray{1}}});
        m_service->setJson("Programs.running", running);
    }
    bool emitRun(const QString& signal, const QString& uuid, const QString& bottle = "office") {
        return m_service->emitSignal("/com/lumora/Manager/Programs", "com.lumora.Manager.Programs", signal,
                                     "ss", {bottle, uuid});
    }
    void openBoth() {
        setBottle({"a", "b"}, m_home.path());
        open({summary("a", "a"), summary("b", "b")});
    }
    /// The offscreen platform does not activate the window under a closed dialog.
    void backToWindow() {
        QTRY_VERIFY(!QApplication::activeModalWidget());
        QApplication::setActiveWindow(m_window.get());
    }

private Q_SLOTS:
    void runsOfOthers() {
        setRunning({"a"});
        openBoth();
        QTRY_COMPARE(runButton("a")->text(), QString(" Quit"));
        QVERIFY(runButton("a")->isVisible());
        QVERIFY(emitRun("ended", "a") && emitRun("started", "b") && emitRun("started", "b", "copy"));
        QTRY_COMPARE(runButton("b")->text(), QString(" Quit"));
        QVERIFY(runButton("a")->text().isEmpty());
        // The copy of a bottle has the same ids.
        QVERIFY(emitRun("ended", "b"));
        QTRY_VERIFY(runButton("b")->text().isEmpty());
        QVERIFY(ProgramRuns::instance()->isRunning("b"));
        // A restarted service reports other runs.
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        setRunning({"a"});
        QVERIFY(m_service->takeName());
        QTRY_VERIFY(ProgramRuns::instance()->isRunning("a") && !ProgramRuns::instance()->isRunning("b"));
        QVERIFY(emitRun("ended", "a"));
        QTRY_VERIFY(!ProgramRuns::instance()->isRunning("a"));
    }

    void failedStart() {
        FailedStarts::instance()->mark("office", "a", {"It needs <b>x.dll</b>.", {"vcrun"}});
        QStringList repaired;
        LaunchWindows::instance().repair = [&](const ProgramRef& ref, const QStringList& components) {
            repaired << ref.uuid + components.join(',');
        };
        openBoth();
        QCOMPARE(runButton("a")->text(), QString("Repair"));
        QVERIFY(tile("a")->toolTip().contains("It needs &lt;b&gt;x.dll"));
        QCOMPARE(tile("a")->accessibleDescription(), QString("It needs <b>x.dll</b>."));
        runButton("a")->click();
        QCOMPARE(repaired, QStringList("avcrun"));
        QVERIFY(emitRun("started", "a"));
        QTRY_COMPARE(runButton("a")->text(), QString(" Quit"));
        QVERIFY(emitRun("ended", "a"));
        QTRY_COMPARE(runButton("a")->text(), QString("Repair"));
        FailedStarts::instance()->record("office", "a", {});
        QVERIFY(runButton("a")->text().isEmpty());
    }

    void removedPackage() {
        const auto setLost = [this](const QJsonArray& lost) {
            const QJsonObject bottle{{"bottle", "office"}, {"package", "com.<b>"}, {"lost", lost}};
            m_service->setJson("CleanUp.bottlesOfRemovedPackages", QJsonArray{bottle});
        };
        const auto orphanQuestion = [this] { return m_window->findChild<Fenk::Dialog*>("orphan_question"); };
        setLost({"a"});
        openBoth();
        QTRY_VERIFY(tile("a")->toolTip().contains("com.&lt;b&gt;"));
        QVERIFY(tile("b")->accessibleDescription().contains("can still be started"));
        // Nothing is started that is not there; the user decides what becomes of the rest.
        runButton("a")->click();
        QTRY_VERIFY(orphanQuestion());
        QVERIFY(!ProgramRuns::instance()->isRunning("a"));
        QCOMPARE(TestSupport::outOfReach(orphanQuestion()), QString());
        QVERIFY(!orphanQuestion()->button(2));  // what is lost would stay lost
        orphanQuestion()->button(1)->click();
        QTRY_VERIFY(question());
        QTRY_VERIFY(question()->findChild<QLabel*>("removal_size")->text().contains("2 programs"));
        question()->button(1)->click();
        QCOMPARE(m_service->waitForCall("delete").arguments, QJsonArray{"office"});
        QCOMPARE(m_service->calls("removeExternalProgram").size(), 0);
        backToWindow();
        setLost({});
        OrphanedBottles::instance()->load();
        QTRY_VERIFY(tile("a")->accessibleDescription().contains("can still be started"));
        tile("b")->onBtnOptionClicked();
        QTRY_VERIFY(tile("b")->optionMenu() && tile("b")->optionMenu()->isVisible());
        tile("b")->optionMenu()->actions().at(1)->trigger();
        QTRY_VERIFY(orphanQuestion());
        m_service->setText("CleanUp.keepBottle", "");
        orphanQuestion()->button(2)->click();
        // Copies take their time.
        QVERIFY(tile("a")->accessibleDescription().contains("is being made your own"));
        const QSignalSpy told(tile("b"), &LocalAppItemWidget::message);
        tile("b")->optionMenu()->actions().at(1)->trigger();
        QCOMPARE(told.count(), 1);
        OrphanedBottles::instance()->keep("office");
        QCOMPARE(m_service->waitForCall("keepBottle").arguments, QJsonArray{"office"});
        QTRY_VERIFY(!tile("a")->toolTip().contains("com."));
        QCOMPARE(m_service->calls("keepBottle").size(), 1);
    }

    void keys() {
        openBoth();
        QVERIFY(emitRun("started", "a"));
        QTRY_COMPARE(runButton("a")->text(), QString(" Quit"));
        tile("a")->setFocus();
        const QSignalSpy menu(tile("a"), &LocalAppItemWidget::menuReady);
        // Return presses the part that has the focus.
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), runButton("a"));
        press(Qt::Key_Return);
        m_service->waitForCall("killProgram");
        tile("a")->findChild<QAbstractButton*>("appitem_options")->setFocus();
        for (const int key : {Qt::Key_Return, Qt::Key_F10}) {
            const int opened = menu.count();
            press(key);
            QTRY_COMPARE(menu.count(), opened + 1);
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
        // Return on stars without a choice does nothing; Delete asks.
        tile("b")->findChild<StarRating*>()->setFocus();
        press(Qt::Key_Return);
        QVERIFY(!ProgramRuns::instance()->isRunning("b"));
        press(Qt::Key_Delete);
        QTRY_VERIFY(question());
        QVERIFY(QTest::qWaitForWindowActive(question()));
        QCOMPARE(TestSupport::outOfReach(question()), QString());
        TestSupport::press(question(), Qt::Key_Escape);
        backToWindow();
        QVERIFY(tile("b")->isAncestorOf(QApplication::focusWidget()) || tile("b")->hasFocus());
        // A search is cleared with the last program that it has found.
        press(Qt::Key_B);
        QCOMPARE(m_window->findChild<Fenk::SearchEdit*>()->text(), QString("b"));
        view()->slotAppRemoved("office", "b");
        QTRY_COMPARE(m_window->findChild<Fenk::SearchEdit*>()->text(), QString());
        QVERIFY(emitRun("ended", "a"));
        QTRY_VERIFY(!ProgramRuns::instance()->isRunning("a"));
    }
};

int main(int argc, char** argv) {
    return runWindowTest<TileStatesTest>(argc, argv);
}
#include "TileStatesTest.moc"
