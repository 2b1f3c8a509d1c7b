#include <QAbstractItemView>
#include <QComboBox>
#include <QFocusFrame>
#include <QPushButton>
#include <QVBoxLayout>

#include "FenkTestMain.h"
#include "fenk/controls/Card.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/controls/SettingRow.h"
#include "fenk/controls/Spinner.h"
#include "fenk/controls/SwitchButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"

using namespace Fenk;

class ControlsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void switchTurnsByKey() {
        SwitchButton button;
        button.setChecked(true);
        for (const auto& [key, after] : {std::pair(Qt::Key_Right, true),
                                         {Qt::Key_Left, false},
                                         {Qt::Key_Return, true},
                                         {Qt::Key_Return, false}}) {
            QTest::keyClick(&button, key);
            QCOMPARE(button.isChecked(), after);
        }
    }

    void alertStandsUntilTheTextChanges() {
        LineEdit edit;
        edit.setAccessibleName("Contact");
        edit.show();
        edit.showAlertMessage("Enter an address", 0);
        QVERIFY(edit.isAlert());
        QCOMPARE(edit.alertMessage(), QString("Enter an address"));
        QCOMPARE(edit.lineEdit()->accessibleName(), QString("Contact"));
        QTest::keyClick(edit.lineEdit(), Qt::Key_A);
        QVERIFY(!edit.isAlert());
        QCOMPARE(edit.alertMessage(), QString());
        edit.showAlertMessage("Short", 1);
        QTRY_VERIFY(!edit.isAlert());
    }

    void spinnerWaitsBeforeItShows() {
        Spinner spinner;
        spinner.show();
        spinner.startDelayed();
        QVERIFY(!spinner.isPlaying());
        QTRY_VERIFY(spinner.isPlaying());
        spinner.stop();
        spinner.startDelayed();
        spinner.stop();
        Spinner later;
        later.startDelayed();
        QTRY_VERIFY(later.isPlaying());
        QVERIFY(!spinner.isPlaying());
    }

    void escapeEmptiesTheSearch() {
        SearchEdit search;
        search.setText("edit");
        QTest::keyClick(&search, Qt::Key_Escape);
        QCOMPARE(search.text(), QString());
    }

    void ringIsForTheKeyboard() {
        QWidget window;
        QVBoxLayout layout(&window);
        auto* first = new QPushButton("First");
        auto* second = new QPushButton("Second");
        for (QWidget* button : {first, second})
            layout.addWidget(button);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto ringed = [&window]() -> QWidget* {
            auto* frame = window.findChild<QFocusFrame*>();
            return frame && frame->isVisible() ? frame->widget() : nullptr;
        };
        QTest::mouseClick(first, Qt::LeftButton);
        QVERIFY(!ringed());
        first->setFocus();
        QTest::keyClick(first, Qt::Key_Tab);
        QCOMPARE(ringed(), second);
        QCOMPARE(window.findChild<QFocusFrame*>()->geometry(), second->geometry().adjusted(-4, -4, 4, 4));
        QTest::mouseClick(first, Qt::LeftButton);
        QVERIFY(!ringed());
    }

    void comboListShowsEveryRow() {
        QComboBox combo;
        combo.addItems({"Wine 10", "Wine 8", "Wine 6"});
        combo.insertSeparator(1);
        combo.show();
        QVERIFY(QTest::qWaitForWindowExposed(&combo));
        combo.showPopup();
        QTRY_VERIFY(combo.view()->isVisible());
        const QRect last = combo.view()->visualRect(combo.model()->index(combo.count() - 1, 0));
        QVERIFY(combo.view()->viewport()->rect().contains(last));
        QCOMPARE(last.height(), Tokens::MenuRowHeight);
        QVERIFY(combo.view()->visualRect(combo.model()->index(1, 0)).height() < last.height());
        combo.hidePopup();
    }

    void rowNamesItsControl() {
        auto* button = new SwitchButton;
        SettingRow row("Save memory", "Programs start more slowly", button);
        QCOMPARE(button->accessibleName(), QString("Save memory"));
        QCOMPARE(button->accessibleDescription(), QString("Programs start more slowly"));
    }

    void elidedLabelTellsTheWhole() {
        Label label("A name that is too long for the room that there is");
        label.setElided(true);
        label.resize(80, 20);
        label.show();
        QCOMPARE(label.toolTip(), label.text());
        label.resize(800, 20);
        QCOMPARE(label.toolTip(), QString());
    }

    void newerMessageTakesThePlace() {
        QWidget window;
        window.resize(600, 400);
        window.show();
        FloatingMessage::show(&window, {}, "First");
        FloatingMessage* second =
            FloatingMessage::show(&window, {}, QString("Second <b>message</b> ").repeated(20), 1);
        QCOMPARE(window.findChildren<FloatingMessage*>().size(), 1);
        QVERIFY(window.rect().contains(second->geometry()));
        const QPointer<FloatingMessage> alive(second);
        QTRY_VERIFY(!alive);
        Dialog dialog("Title", "Message");
        dialog.addButton("Close");
        dialog.show();
        const auto* third = FloatingMessage::show(&dialog, {}, "Third");
        QVERIFY(third->geometry().bottom() < dialog.button(0)->mapTo(&dialog, QPoint()).y());
    }
};

FENK_TEST_MAIN(ControlsTest)
#include "ControlsTest.moc"
