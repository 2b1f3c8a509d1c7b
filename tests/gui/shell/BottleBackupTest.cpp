#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>

#include "LibraryFixture.h"
#include "backend/PendingWork.h"
#include "shell/library/BottleBackupActions.h"
#include "shell/library/BottleCopyDialog.h"
#include "support/Table.h"

using namespace TestSupport;

/// Backing up and restoring from the library, over a service that answers as told.
class BottleBackupTest : public LibraryFixture {
    Q_OBJECT

    QString file() const { return m_home.path() + "/a.cellarix-backup"; }

    template <class Widget>
    Widget* find(const char* name) const {
        return m_window->findChild<Widget*>(name);
    }
    BottleCopyDialog* copyDialog() const {
        for (auto* dialog : m_window->findChildren<BottleCopyDialog*>()) {
            if (dialog->isVisible())
                return dialog;
        }
        return nullptr;
    }
    static QString textOf(QWidget* dialog) { return dialog->findChild<QLabel*>("copy_text")->text(); }
    void choose(const char* dialogName) {
        QTRY_VERIFY(find<QFileDialog>(dialogName));
        auto* dialog = find<QFileDialog>(dialogName);
        dialog->close();
        Q_EMIT dialog->fileSelected(file());
    }
    void backUp() {
        setBottle({"a"});
        open({summary("a", "Harbour Office")});
        tile("a")->setFocus();
        press(Qt::Key_F10);
        QTRY_VERIFY(tile("a")->optionMenu() && tile("a")->optionMenu()->isVisible());
        tile("a")->action(ProgramMenu::Action::BackUp)->trigger();
        tile("a")->optionMenu()->close();
        choose("backup_file_dialog");
        QCOMPARE(m_service->waitForCall("exportBottle").arguments, QJsonArray({"office", file()}));
        QTRY_VERIFY(copyDialog());
    }
    void tellProgress(qint64 done, qint64 total) {
        m_service->emitSignal("/com/lumora/Manager/Backup", "com.lumora.Manager.Backup", "copyProgress",
                              "sxx", {file(), done, total});
    }

private Q_SLOTS:
    void progressAndCancel() {
        m_service->setHeld("Backup.exportBottle", R"({"ok":false,"reasons":[{"code":"cancelled"}]})");
        backUp();
        BottleCopyDialog* dialog = copyDialog();
        auto* bar = dialog->findChild<QProgressBar*>("copy_bar");
        tellProgress(500000, 2000000);
        QTRY_COMPARE(bar->value() * 4, bar->maximum());
        QVERIFY2(textOf(dialog).contains("500") && textOf(dialog).contains('2'), qPrintable(textOf(dialog)));
        QVERIFY(PendingWork::instance()->isPending());
        QTest::mouseClick(dialog->button(0), Qt::LeftButton);
        QCOMPARE(m_service->waitForCall("cancelBottleCopy").arguments, QJsonArray{file()});
        tellProgress(600000, 2000000);
        m_service->release("exportBottle");
        QTRY_VERIFY(!copyDialog() && !PendingWork::instance()->isPending());
    }

    void ends_data() {
        const Table<QString, QString, QString, QString> row("answer", "title", "text", "button");
        row("done", R"({"ok":true,"bytes":1000,"leftOut":[]})", "Harbour Office is backed up (1.0 kB).",
            "a.cellarix-backup", "Show File");
        row("left out", R"({"ok":true,"bytes":1000,"leftOut":["drive_c/a -> /b"]})",
            "Harbour Office is backed up (1.0 kB).", "drive_c/a -> /b", "Show File");
        row("failed", R"({"ok":false,"error":"x","reasons":[{"code":"disk-full","arguments":["/d"]}]})",
            "Harbour Office could not be backed up.", "No space left on the disk that holds /d.", "");
        row("busy", R"({"ok":false,"busy":["App <b>"],"reasons":[{"code":"busy","arguments":["App"]}]})",
            "Harbour Office cannot be backed up while programs run in its container.", "App <b>",
            "Try Again");
        row("changed", R"({"ok":false,"reasons":[{"code":"bottle-changed"}]})",
            "Harbour Office could not be backed up.", "were changed", "Try Again");
        row("ended by another", R"({"ok":false,"reasons":[{"code":"cancelled"}]})",
            "Harbour Office could not be backed up.", "stopped", "");
    }
    void ends() {
        QFETCH(QString, answer);
        QFETCH(QString, title);
        QFETCH(QString, text);
        QFETCH(QString, button);
        m_service->setText("Backup.exportBottle", answer);
        backUp();
        QTRY_COMPARE(copyDialog()->title(), title);
        QVERIFY2(textOf(copyDialog()).contains(text), qPrintable(textOf(copyDialog())));
        QCOMPARE(copyDialog()->buttonCount(), button.isEmpty() ? 1 : 2);
        if (!button.isEmpty())
            QCOMPARE(copyDialog()->button(1)->text(), button);
        if (button == "Try Again") {
            m_service->setText("Backup.exportBottle", R"({"ok":true,"bytes":1000})");
            QTest::mouseClick(copyDialog()->button(1), Qt::LeftButton);
            m_service->waitForCall("exportBottle", 2);
            QTRY_VERIFY(copyDialog() && copyDialog()->title().contains("is backed up"));
        }
        QTest::keyClick(copyDialog(), Qt::Key_Escape);
        QTRY_VERIFY(find<BottleCopyDialog>("bottle_copy_dialog") == nullptr);
    }

    /// Closing the dialog ends nothing, and a failure is not missed.
    void goesOnInBackground() {
        m_service->setHeld("Backup.exportBottle", R"({"ok":false,"error":"why"})");
        backUp();
        QTest::keyClick(copyDialog(), Qt::Key_Escape);
        QTRY_VERIFY(!copyDialog());
        QVERIFY(PendingWork::instance()->isPending());
        QVERIFY(m_service->calls("cancelBottleCopy").isEmpty());
        m_service->release("exportBottle");
        QTRY_VERIFY(copyDialog() && textOf(copyDialog()) == "why");
    }

    void noWindow_data() {
        const Table<bool> row("isDeleted");
        row("closed", false);
        row("deleted", true);
    }
    void noWindow() {
        QFETCH(bool, isDeleted);
        QVERIFY(m_service->takeName("org.freedesktop.Notifications"));
        m_service->setHeld("Backup.exportBottle", R"({"ok":false,"error":"why"})");
        backUp();
        m_window->close();
        if (isDeleted)
            m_window.reset();
        m_service->release("exportBottle");
        const QString call = QJsonDocument(m_service->waitForCall("Notify").arguments).toJson();
        QVERIFY2(call.contains("Harbour Office could not be backed up.") && call.contains("why"),
                 qPrintable(call));
        QTRY_VERIFY(!PendingWork::instance()->isPending());
    }

    void restore() {
        m_service->setText("Backup.describeBackup",
                           R"({"ok":true,"name":"b","programs":["One","Two"],"bytes":5000000})");
        m_service->setText("Backup.importBottle",
                           R"({"ok":true,"bottle":"b","otherWine":true,"variables":["LD_A"]})");
        openUntil(State::Ready);  // an empty library
        QTest::mouseClick(find<QAbstractButton>("welcome_restorebtn"), Qt::LeftButton);
        choose("restore_file_dialog");
        QTRY_VERIFY(find<Fenk::Dialog>("restore_question"));
        QTest::mouseClick(find<Fenk::Dialog>("restore_question")->button(1), Qt::LeftButton);
        QCOMPARE(m_service->waitForCall("importBottle").arguments, QJsonArray({file(), ""}));
        QTRY_VERIFY(copyDialog() && copyDialog()->title().startsWith("Back in the library: One"));
        QVERIFY(textOf(copyDialog()).contains("another Wine") && textOf(copyDialog()).contains("LD_A"));
    }

    /// A file that exists is replaced only when the user has been asked about that name.
    void replacesNothingUnasked() {
        setBottle({"a"});
        open({summary("a", "Harbour Office")});
        m_home.write("a.cellarix-backup", "older");
        Program program;
        program.name = "Harbour Office";
        program.ref.bottle = "office";
        BottleBackupActions::backUp(program, m_window.get());
        QTRY_VERIFY(find<QFileDialog>("backup_file_dialog"));
        auto* dialog = find<QFileDialog>("backup_file_dialog");
        dialog->close();
        Q_EMIT dialog->fileSelected(m_home.path() + "/a");
        QTRY_VERIFY(find<Fenk::Dialog>("replace_question"));
        QVERIFY(m_service->calls("exportBottle").isEmpty());
        QTest::mouseClick(find<Fenk::Dialog>("replace_question")->button(1), Qt::LeftButton);
        QCOMPARE(m_service->waitForCall("exportBottle").arguments, QJsonArray({"office", file()}));
    }

    void noBackup() {
        m_service->setText("Backup.describeBackup", R"({"ok":false,"error":"It is none."})");
        open({summary("a", "Harbour Office")});
        QTest::mouseClick(find<QAbstractButton>("applistview_restorebtn"), Qt::LeftButton);
        choose("restore_file_dialog");
        QTRY_VERIFY(find<Fenk::Dialog>("restore_refusal"));
        QCOMPARE(find<Fenk::Dialog>("restore_refusal")->message(), QString("It is none."));
        QVERIFY(m_service->calls("importBottle").isEmpty());
    }

    void fileNames() {
        const QDate day(2026, 1, 2);
        QCOMPARE(BottleBackupActions::fileNameFor("../a/b: \"c\"\n", day),
                 "a b c 2026-01-02.cellarix-backup");
        QCOMPARE(BottleBackupActions::fileNameFor("", day), "2026-01-02.cellarix-backup");
        QVERIFY(BottleBackupActions::fileNameFor(QString(300, QChar(0x540d)), day).toUtf8().size() < 230);
    }
};

int main(int argc, char** argv) {
    return runWindowTest<BottleBackupTest>(argc, argv);
}

#include "BottleBackupTest.moc"
