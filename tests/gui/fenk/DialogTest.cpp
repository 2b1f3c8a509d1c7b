#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTimer>
#include <functional>

#include "FenkTestMain.h"
#include "fenk/controls/IconButton.h"
#include "fenk/window/Dialog.h"
#include "fenk/window/MainWindow.h"
#include "fenk/window/Veil.h"
#include "support/Table.h"

using namespace Fenk;
using TestSupport::Table;

Q_DECLARE_METATYPE(std::function<void(QPointer<Fenk::Dialog>&)>)

namespace {

struct PairDialog : Dialog {
    explicit PairDialog(ButtonType second = ButtonRecommend) {
        addButton("Keep");
        addButton("Go on", false, second);
    }
};

/// Runs the dialog, calls act once it is active, and returns the result.
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

class DialogTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void clickAnswersWithItsIndex() {
        Dialog dialog("Title", "Message");
        dialog.addButtons({"One", "Two", "Three"});
        for (int index = 0; index < 3; ++index) {
            QSignalSpy clicked(&dialog, &Dialog::buttonClicked);
            QCOMPARE(answer(dialog, [&] { QTest::mouseClick(dialog.button(index), Qt::LeftButton); }), index);
            QCOMPARE(clicked.count(), 1);
            QCOMPARE(clicked[0], QVariantList({index, dialog.button(index)->text()}));
        }
    }

    void keys_data() {
        const Table<int, int, int> row("type", "key", "expected");
        row("Return recommended", Dialog::ButtonRecommend, Qt::Key_Return, 1);
        row("Enter recommended", Dialog::ButtonRecommend, Qt::Key_Enter, 1);
        row("Return never destroys", Dialog::ButtonWarning, Qt::Key_Return, 0);
        row("Escape destroying", Dialog::ButtonWarning, Qt::Key_Escape, -1);
    }
    void keys() {
        QFETCH(int, type);
        QFETCH(int, key);
        PairDialog dialog{Dialog::ButtonType(type)};
        QTEST(answer(dialog, [&] { QTest::keyClick(dialog.focusWidget(), Qt::Key(key)); }), "expected");
    }

    void heldReturnDoesNotRepeat() {
        PairDialog dialog;
        QSignalSpy clicked(&dialog, &Dialog::buttonClicked);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
        QCOMPARE(answer(dialog,
                        [&] {
                            QApplication::sendEvent(&dialog, &held);
                            QTest::keyClick(&dialog, Qt::Key_Escape);
                        }),
                 -1);
        QCOMPARE(clicked.count(), 0);
    }

    void returnInAFieldOnlySuggests_data() {
        const Table<int, int> row("type", "expected");
        row("recommended", Dialog::ButtonRecommend, 1);
        row("destroying stays open", Dialog::ButtonWarning, -1);
    }
    void returnInAFieldOnlySuggests() {
        QFETCH(int, type);
        PairDialog dialog{Dialog::ButtonType(type)};
        auto* field = new QLineEdit;
        dialog.addContent(field);
        const auto typeInField = [&] {
            field->setFocus();
            QTest::keyClick(field, Qt::Key_Return);
            if (dialog.isVisible())
                QTest::keyClick(field, Qt::Key_Escape);
        };
        QTEST(answer(dialog, typeInField), "expected");
    }

    void closeButtonRejects() {
        PairDialog dialog;
        QSignalSpy clicked(&dialog, &Dialog::buttonClicked);
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        auto* button = dialog.findChild<IconButton*>("dialog_close");
        QCOMPARE(answer(dialog, [&] { QTest::mouseClick(button, Qt::LeftButton); }), -1);
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(rejected.count(), 1);
    }

    void runsAgainAfterEachEnd() {
        PairDialog dialog;
        QCOMPARE(answer(dialog, [&] { dialog.button(1)->click(); }), 1);
        QCOMPARE(answer(dialog, [&] { dialog.hide(); }), -1);
        QCOMPARE(answer(dialog, [&] { QTest::keyClick(&dialog, Qt::Key_Escape); }), -1);
        QCOMPARE(answer(dialog, [&] { dialog.button(0)->click(); }), 0);
    }

    /// Its first button stays, with another text; the second click ends the dialog.
    void handlerMayReplaceTheButtons() {
        Dialog dialog;
        dialog.addButton("Install");
        dialog.setOnButtonClickedClose(false);
        connect(&dialog, &Dialog::buttonClicked, &dialog, [&dialog](int index, const QString& text) {
            if (text == "Done")
                return dialog.done(index);
            dialog.clearButtons();
            dialog.addButton("Done");
        });
        bool stayed = false;
        const auto clickTwice = [&] {
            dialog.button(0)->click();
            stayed = dialog.isVisible();
            dialog.button(0)->click();
        };
        QCOMPARE(answer(dialog, clickTwice), 0);
        QVERIFY(stayed && dialog.buttonCount() == 1);
    }

    void allTextsFit() {
        Dialog dialog(
            "A title that is quite a bit longer than titles usually are, so that it needs two lines",
            QString("Some words that fill line after line. ").repeated(12));
        dialog.addButton("No");
        dialog.addButton("Continue the installation of every component", true, Dialog::ButtonRecommend);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        for (const char* name : {"dialog_title", "dialog_message"}) {
            const auto* label = dialog.findChild<QLabel*>(name);
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), name);
        }
        QVERIFY2(qAbs(dialog.button(0)->width() - dialog.button(1)->width()) <= 1,
                 "buttons are equally wide");
        QVERIFY(dialog.button(1)->width() >= dialog.button(1)->sizeHint().width());
    }

    void floatsOverItsWindow_data() {
        const Table<std::function<void(QPointer<Dialog>&)>> row("close");
        row("button", [](QPointer<Dialog>& dialog) { dialog->button(0)->click(); });
        row("Escape", [](QPointer<Dialog>& dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        row("close", [](QPointer<Dialog>& dialog) { dialog->close(); });
        row("hide", [](QPointer<Dialog>& dialog) { dialog->hide(); });
        row("delete", [](QPointer<Dialog>& dialog) { delete dialog; });
        row("the window goes", [](QPointer<Dialog>& dialog) { delete dialog->parentWidget(); });
    }
    void floatsOverItsWindow() {
        QFETCH(std::function<void(QPointer<Dialog>&)>, close);
        const QPointer<MainWindow> window(new MainWindow);
        auto* row = new QWidget;
        row->setFocusPolicy(Qt::StrongFocus);
        auto* part = new QLineEdit(row);
        window->setCentralWidget(row);
        window->setGeometry(100, 100, 600, 500);
        window->show();
        part->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(window));
        const auto brightness = [&] { return window->grab().toImage().pixelColor(300, 20).lightness(); };
        const int bright = brightness();

        QPointer<Dialog> dialog(new Dialog("Title", "Message", window));
        dialog->addButton("Keep");
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QVERIFY(qAbs(brightness() - bright * 7 / 10) <= 2);
        const auto offset = [&] { return dialog->geometry().center() - window->geometry().center(); };
        QTRY_VERIFY(offset().manhattanLength() <= 2);
        {
            Dialog second("Second", "", window);
            second.show();
            QVERIFY2(qAbs(brightness() - bright * 7 / 10) <= 2, "two dialogs dim no more than one");
        }
        window->setGeometry(160, 140, 700, 520);
        QTRY_VERIFY(offset().manhattanLength() <= 2);
        QTRY_COMPARE(window->findChild<Veil*>()->size(), window->size());

        part->hide();
        close(dialog);
        if (!window)
            return;
        QCOMPARE(brightness(), bright);
        QVERIFY(!window->findChild<Veil*>());
        QCOMPARE(window->focusWidget(), row);  // the nearest that is still there
    }
};

FENK_TEST_MAIN(DialogTest)
#include "DialogTest.moc"
