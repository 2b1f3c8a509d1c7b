#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTimer>
#include <functional>

#include "FenkTestMain.h"
#include "fenk/Dialog.h"
#include "fenk/IconButton.h"

using namespace Fenk;

namespace {

void addPair(Dialog& dialog, Dialog::ButtonType second) {
    dialog.addButton("Keep");
    dialog.addButton("Go on", false, second);
}

/// Runs the dialog, does something once it is up, and gives the answer.
int answer(Dialog& dialog, const std::function<void()>& act) {
    QTimer::singleShot(0, &dialog, [&dialog, act] {
        if (QTest::qWaitForWindowActive(&dialog))
            act();
        else
            dialog.reject();
    });
    return dialog.exec();
}

}  // namespace

class TestDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void clickAnswersWithItsIndex_data() {
        QTest::addColumn<int>("index");
        QTest::newRow("first") << 0;
        QTest::newRow("second") << 1;
        QTest::newRow("third") << 2;
    }
    void clickAnswersWithItsIndex() {
        QFETCH(int, index);
        Dialog dialog("Title", "Message");
        dialog.addButtons({"One", "Two", "Three"});
        QSignalSpy clicked(&dialog, &Dialog::buttonClicked);
        const int given = answer(dialog, [&] { QTest::mouseClick(dialog.button(index), Qt::LeftButton); });
        QCOMPARE(given, index);
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked[0][0].toInt(), index);
        QCOMPARE(clicked[0][1].toString(), dialog.button(index)->text());
    }

    void keys_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("expected");
        QTest::newRow("Return recommended") << int(Dialog::ButtonRecommend) << int(Qt::Key_Return) << 1;
        QTest::newRow("Enter recommended") << int(Dialog::ButtonRecommend) << int(Qt::Key_Enter) << 1;
        QTest::newRow("Return never destroys") << int(Dialog::ButtonWarning) << int(Qt::Key_Return) << 0;
        QTest::newRow("Escape recommended") << int(Dialog::ButtonRecommend) << int(Qt::Key_Escape) << -1;
        QTest::newRow("Escape destroying") << int(Dialog::ButtonWarning) << int(Qt::Key_Escape) << -1;
    }
    void keys() {
        QFETCH(int, type);
        QFETCH(int, key);
        QFETCH(int, expected);
        Dialog dialog;
        addPair(dialog, Dialog::ButtonType(type));
        QCOMPARE(answer(dialog, [&] { QTest::keyClick(dialog.focusWidget(), Qt::Key(key)); }), expected);
    }

    void returnInAFieldOnlySuggests_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("expected");
        QTest::newRow("recommended") << int(Dialog::ButtonRecommend) << 1;
        QTest::newRow("destroying stays open") << int(Dialog::ButtonWarning) << -1;
    }
    void returnInAFieldOnlySuggests() {
        QFETCH(int, type);
        QFETCH(int, expected);
        Dialog dialog;
        auto* field = new QLineEdit;
        dialog.addContent(field);
        addPair(dialog, Dialog::ButtonType(type));
        QCOMPARE(answer(dialog,
                        [&] {
                            field->setFocus();
                            QTest::keyClick(field, Qt::Key_Return);
                            if (dialog.isVisible())
                                QTest::keyClick(field, Qt::Key_Escape);
                        }),
                 expected);
    }

    void closeButtonRejects() {
        Dialog dialog;
        addPair(dialog, Dialog::ButtonRecommend);
        QSignalSpy clicked(&dialog, &Dialog::buttonClicked);
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        const auto close = [&] {
            QTest::mouseClick(dialog.findChild<IconButton*>("dialog_close"), Qt::LeftButton);
        };
        QCOMPARE(answer(dialog, close), -1);
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(rejected.count(), 1);
    }

    void hidingIsNoAnswer() {
        Dialog dialog;
        addPair(dialog, Dialog::ButtonRecommend);
        QCOMPARE(answer(dialog, [&] { dialog.hide(); }), -1);
    }

    void runsTwice() {
        Dialog dialog;
        addPair(dialog, Dialog::ButtonRecommend);
        QCOMPARE(answer(dialog, [&] { dialog.button(1)->click(); }), 1);
        QCOMPARE(answer(dialog, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); }), -1);
        QCOMPARE(answer(dialog, [&] { dialog.button(0)->click(); }), 0);
    }

    void clickMayLeaveItOpen() {
        Dialog dialog;
        addPair(dialog, Dialog::ButtonRecommend);
        dialog.setOnButtonClickedClose(false);
        connect(&dialog, &Dialog::buttonClicked, &dialog, [&dialog](int index) {
            if (index == 0)
                dialog.done(index);
        });
        bool stayed = false;
        QCOMPARE(answer(dialog,
                        [&] {
                            dialog.button(1)->click();
                            stayed = dialog.isVisible();
                            dialog.button(0)->click();
                        }),
                 0);
        QVERIFY(stayed);
    }

    void handlerMayReplaceTheButtons() {
        Dialog dialog;
        dialog.addButton("Install");
        dialog.setOnButtonClickedClose(false);
        connect(&dialog, &Dialog::buttonClicked, &dialog, [&dialog] {
            dialog.clearButtons();
            dialog.addButton("Done");
        });
        dialog.button(0)->click();
        QCOMPARE(dialog.buttonCount(), 1);
        QCOMPARE(dialog.button(0)->text(), QString("Done"));
    }

    void nextAnswerIsGivenOnce() {
        Dialog dialog;
        addPair(dialog, Dialog::ButtonRecommend);
        QSignalSpy clicked(&dialog, &Dialog::buttonClicked);
        Dialog::setNextAnswer(1);
        QCOMPARE(dialog.exec(), 1);
        QCOMPARE(clicked.count(), 1);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(answer(dialog, [&] { dialog.button(0)->click(); }), 0);
        Dialog::setNextAnswer(-1);
        QCOMPARE(dialog.exec(), -1);
    }

    void buttonsAreEquallyWide() {
        Dialog dialog("Title", "Message");
        dialog.addButton("No");
        dialog.addButton("Continue the installation of every component", true, Dialog::ButtonRecommend);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QVERIFY(qAbs(dialog.button(0)->width() - dialog.button(1)->width()) <= 1);
        QVERIFY(dialog.button(1)->width() >= dialog.button(1)->sizeHint().width());
    }

    void wholeMessageFits() {
        Dialog dialog(
            "A title that is quite a bit longer than titles usually are, so that it needs two lines",
            QString("Some words that fill line after line. ").repeated(12));
        dialog.addButton("Close");
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        for (const char* name : {"dialog_title", "dialog_message"}) {
            const auto* label = dialog.findChild<QLabel*>(name);
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), name);
        }
    }

    void centresOnItsParent() {
        QWidget parent;
        parent.setGeometry(100, 80, 600, 440);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        Dialog dialog(&parent);
        dialog.setFixedSize(400, 200);
        dialog.moveToCenter();
        const QPoint off = dialog.geometry().center() - parent.frameGeometry().center();
        QVERIFY(off.manhattanLength() <= 2);
    }
};

FENK_TEST_MAIN(TestDialog)
#include "tst_dialog.moc"
