#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>

#include "backend/PendingWork.h"
#include "gui/shell/LibraryFixture.h"
#include "programs/ListPlaceholder.h"
#include "shell/associations/FileAssosiationsExportDialog.h"
#include "shell/properties/AppPropertyDlg.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

const QString Id = "00000000-0000-4000-8000-000000000001";
const int FocusLoss = -1, Close = -2;

QString saved(const QString& name, const QString& icon) {
    return QString(R"({"icon":"%1","id":"%2","name":"%3"})").arg(icon, Id, name);
}

}  // namespace

class ProgramDialogsTest : public LibraryFixture {
    Q_OBJECT

    QPointer<AppPropertyDlg> m_dialog;
    QStringList m_opened;

    template <class T>
    T* part(const char* name) const {
        return m_dialog->findChild<T*>(name);
    }
    QAbstractButton* pen() const { return part<QAbstractButton>("property_name_pen"); }
    QLineEdit* field() const { return part<QLineEdit>("property_name_field"); }
    QString shownName() const { return part<QLabel>("property_name")->text(); }
    QString errorText() const { return part<QLabel>("property_error")->text(); }
    QStringList updates() {
        QStringList records;
        for (const auto& call : m_service->calls("updateExternalProgram"))
            records << call.arguments.at(1).toString();
        return records;
    }
    void setProgram(const QJsonObject& record, const QString& path = QString()) {
        m_service->setBottle("office", {{"Path", path}, {"External_Programs", QJsonObject{{Id, record}}}});
    }
    void openProperties() {
        Program known;
        known.ref = {"office", Id};
        known.setName("known");
        m_dialog = new AppPropertyDlg(known);
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->show();
        QCOMPARE(shownName(), QString("known"));
        QVERIFY(QTest::qWaitForWindowActive(m_dialog));
        m_service->waitForCall("get");
    }
    void write(const QString& name, int end) {
        QTRY_VERIFY(pen()->isEnabled());
        pen()->click();
        QTRY_VERIFY(field()->hasFocus());
        QTest::keyClick(field(), Qt::Key_Delete);
        QTest::keyClicks(field(), name);
        if (end == FocusLoss)
            part<QWidget>("property_icon")->setFocus();
        else if (end == Close)
            m_dialog->close();
        else
            QTest::keyClick(field(), Qt::Key(end));
    }
    void chooseIcon(const QString& file) {
        QTRY_VERIFY(part<QAbstractButton>("property_icon")->isEnabled());
        part<QAbstractButton>("property_icon")->click();
        auto* chooser = part<QFileDialog>("property_icon_dialog");
        Q_EMIT chooser->fileSelected(file);
        chooser->close();
    }

private Q_SLOTS:
    void initTestCase() { QDesktopServices::setUrlHandler("file", this, "onOpened"); }
    void onOpened(const QUrl& url) { m_opened << url.toString(); }
    void cleanup() {
        delete m_dialog;
        QTRY_VERIFY(!PendingWork::instance()->isPending());
        m_opened.clear();
        LibraryFixture::cleanup();
    }

    void rename_data() {
        const Table<QString, int, QStringList> row("name", "end", "records");
        row("Return", "new", int(Qt::Key_Return), QStringList(saved("new", "i")));
        row("Escape", "new", int(Qt::Key_Escape), QStringList());
        row("empty", "", int(Qt::Key_Return), QStringList(saved("", "i")));
        row("focus elsewhere", "<b>", FocusLoss, QStringList(saved("<b>", "i")));
        row("window closed", "new", Close, QStringList(saved("new", "i")));
    }
    void rename() {
        QFETCH(QString, name);
        QFETCH(int, end);
        QFETCH(QStringList, records);
        const LogCapture log;
        setProgram({{"name", "old"}, {"icon", "i"}});
        openProperties();
        write(name, end);
        if (end != Close) {
            QCOMPARE(shownName(), records.isEmpty() ? QString("old") : name);
            QVERIFY(!field()->isVisible() && m_dialog->isVisible());
        }
        QTRY_VERIFY(!PendingWork::instance()->isPending());
        QCOMPARE(updates(), records);
        QCOMPARE(log.count("update app info in cfg: office:" + Id), records.size());
    }

    void refused() {
        const LogCapture log;
        setProgram({{"name", "old"}});
        m_service->setError("updateExternalProgram", "read only");
        openProperties();
        QTRY_COMPARE(shownName(), QString("old"));
        for (const bool isGone : {false, true}) {
            if (isGone)
                m_service->setBottle("office", {{"External_Programs", QJsonObject{{"b", QJsonObject()}}}});
            write("new", Qt::Key_Return);
            QCOMPARE(shownName(), QString("new"));
            QTRY_COMPARE(shownName(), QString("old"));
            QCOMPARE(errorText().contains("removed"), isGone);
        }
        QCOMPARE(updates().size(), 1);
        QVERIFY(log.contains("update app rating failed: read only"));
        QVERIFY(log.contains("program " + Id + " not in bottles: office"));
    }

    void openedTooLate() {
        const LogCapture log;
        m_service->setBottle("office", {});
        openProperties();
        QTRY_VERIFY(!errorText().isEmpty());
        QVERIFY(log.contains("program " + Id + " not in bottles: office"));
        QVERIFY(!pen()->isEnabled());
    }

    void oneAfterTheOther() {
        const QString icon = m_home.path() + "/a.png";
        QVERIFY(QImage(8, 8, QImage::Format_RGB32).save(icon));
        setProgram({{"name", "old"}});
        m_service->setAnswers("updateExternalProgram", {{{"text", ""}, {"hold", true}}, {{"text", ""}}});
        openProperties();
        write("a", Qt::Key_Return);
        m_service->waitForCall("updateExternalProgram");
        write("b", Qt::Key_Return);
        chooseIcon(icon);
        m_dialog->close();
        QTRY_VERIFY(!m_dialog);
        QCOMPARE(updates().size(), 1);
        QCOMPARE(m_service->release(), 1);
        m_service->waitForCall("updateExternalProgram", 3);
        QCOMPARE(updates(), QStringList({saved("a", ""), saved("b", ""), saved("b", icon)}));
    }

    void noPicture() {
        setProgram({{"name", "old"}});
        openProperties();
        chooseIcon(m_home.write("a.png", "text"));
        QTRY_VERIFY(errorText().contains("a.png"));
        QVERIFY(updates().isEmpty());
    }

    void folder_data() {
        const Table<QString, QString, QString> row("bottle", "path", "opened");
        row("Windows", "/b", R"(C:\Games\A\a.exe)", "/b/drive_c/games/a");
        row("Unix", "/b", m_home.path() + "/b/drive_c/games/../games/a.exe", "/b/drive_c/games");
        row("gone", "/b", R"(C:\No\a.exe)", "");
        row("no bottle", "", "/tmp/a.exe", "");
    }
    void folder() {
        QFETCH(QString, bottle);
        QFETCH(QString, path);
        QFETCH(QString, opened);
        const LogCapture log;
        m_home.write("b/drive_c/games/a/a.exe", QByteArray(1536, 'x'));
        QDir(m_home.path() + "/b").mkdir("dosdevices");
        QFile::link("../drive_c", m_home.path() + "/b/dosdevices/c:");
        setProgram({{"name", "old"}, {"path", path}}, bottle.isEmpty() ? QString() : m_home.path() + bottle);
        openProperties();
        auto* link = part<QAbstractButton>("property_path");
        QTRY_COMPARE(link->accessibleName(), path);
        if (opened.endsWith("/a"))
            QTRY_COMPARE(part<QLabel>("property_size")->text(), QString("1.50 KiB"));
        QTest::keyClick(link, Qt::Key_Return);
        QTRY_VERIFY(m_opened.size() == 1 || !errorText().isEmpty());
        const QString home = QFileInfo(m_home.path()).canonicalFilePath();
        QCOMPARE(QUrl(m_opened.value(0)).path(), opened.isEmpty() ? QString() : home + opened);
        QCOMPARE(log.contains("bottles path is empty"), bottle.isEmpty());
    }

    void associations() {
        m_home.write("a/assosiate.json",
                     R"({"web":{"mime":"x-scheme-handler/web"},".a":{"mime":"a/b"},"x":1})");
        const auto keys = [this](const QString& path, int system) {
            return BottleAssociations::read(m_home.path() + path, system).keys();
        };
        QCOMPARE(keys("/a", 22), QStringList({".a", "web", "x"}));
        QCOMPARE(keys("/a", 23), QStringList({".a", "x"}));
        QCOMPARE(keys("/none", 22), QStringList());
    }

    void exportThem_data() {
        const Table<QByteArray, int, QJsonArray> row("exported", "key", "chosen");
        const QByteArray before = R"({"office":[".b",".gone"],"other":[".a"]})";
        row("one more than before", before, Qt::Key_Space, QJsonArray({".a", ".b"}));
        row("never before", "torn", Qt::Key_Home, QJsonArray());
    }
    void exportThem() {
        QFETCH(QByteArray, exported);
        QFETCH(int, key);
        QFETCH(QJsonArray, chosen);
        m_home.write("e/assosiate.json", R"({".a":{"comment":"A","icon":"/dev/zero"},
            ".b":{"comment":"no","friendly_name":"<b> B"},".c":{}})");
        m_home.write(".local/share/lumora-wine-bottles/exported_associations.json", exported);
        m_service->setBottle("office", {{"Path", m_home.path() + "/e"}});
        const QPointer<FileAssosiationsExportDialog> dialog = new FileAssosiationsExportDialog("office");
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        auto* list = dialog->findChild<QAbstractItemView*>("file_associations");
        const QAbstractItemModelTester tester(list->model());
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QTRY_VERIFY(dialog->button(1)->isEnabled() && list->hasFocus());
        QCOMPARE(list->model()->index(0, 3).data().toString(), QString("A"));
        QCOMPARE(list->model()->index(1, 3).data().toString(), QString("<b> B"));
        QCOMPARE(TestSupport::outOfReach(dialog), QString());
        list->setFocus(Qt::TabFocusReason);
        QTest::keyClick(list, Qt::Key(key));
        const QPoint last = list->visualRect(list->model()->index(2, 2)).center();
        for (int i = 0; i < 2; ++i)
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, last);
        QTest::keyClick(list, Qt::Key_Return);
        QTRY_VERIFY(!dialog);
        QCOMPARE(m_service->waitForCall("exportFileAssociations").arguments, QJsonArray({"office", chosen}));
    }

    void nothingToExport() {
        for (const bool isRefused : {false, true}) {
            if (isRefused)
                m_service->setError("get", "no");
            FileAssosiationsExportDialog dialog("office");
            dialog.show();
            QTRY_VERIFY(dialog.findChild<ListPlaceholder*>());
            QVERIFY(!dialog.button(1)->isEnabled());
        }
    }

    void keys() {
        setProgram({{"name", "Ledger"}});
        openProperties();
        QTRY_VERIFY(pen()->isEnabled());
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        TestSupport::press(m_dialog, Qt::Key_F2);
        QTRY_VERIFY(field()->hasFocus());
        QCOMPARE(field()->selectedText(), QString("Ledger"));
        TestSupport::press(m_dialog, Qt::Key_Escape);
        QTRY_VERIFY(pen()->hasFocus() && !field()->isVisible());
        TestSupport::press(m_dialog, Qt::Key_Escape);
        QTRY_VERIFY(!m_dialog);
    }
};

int main(int argc, char** argv) {
    return runWindowTest<ProgramDialogsTest>(argc, argv);
}
#include "ProgramDialogsTest.moc"
