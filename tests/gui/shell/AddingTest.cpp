#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QMimeData>

#include "LibraryFixture.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/LineEdit.h"
#include "shell/IndexView.h"
#include "shell/SearchWidget.h"
#include "shell/adding/AddAppsWidget.h"
#include "shell/adding/AddingTexts.h"
#include "store/install/SetupAppInfoDialog.h"
#include "support/HttpServer.h"
#include "support/KeyWalk.h"
#include "support/SmallProgram.h"
#include "support/Table.h"
#include "support/ZipFile.h"
#include "widgets/DropArea.h"

using TestSupport::smallProgram;
using TestSupport::Table;
using TestSupport::zipOf;

namespace {
const char Manifest[] = "Name: Seven\nDebInfo: {}\n";
const char Valid[] = "该文件为有效文件";
const char Invalid[] = "该文件解析错误，请重新选择";
}  // namespace

/// The page that adds programs, in the main window.
class AddingTest : public LibraryFixture {
    Q_OBJECT

    TestSupport::HttpServer m_server;

    AddAppsWidget* page() const { return m_window->findChild<AddAppsWidget*>(); }
    QString shownTab() const {
        for (const char* name : {"add_local_file", "add_online_file", "add_green_file"}) {
            if (page()->findChild<QWidget*>(name)->isVisible())
                return name;
        }
        return {};
    }
    template <class Widget = QAbstractButton>
    Widget* shown(const QString& name) const {
        for (Widget* widget : page()->findChildren<Widget*>()) {
            if (widget->isVisible() && (widget->objectName() == name || widget->accessibleName() == name))
                return widget;
        }
        return nullptr;
    }
    QString text(const QString& name) const {
        const auto* label = shown<QLabel>(name);
        return label ? label->text() : QString();
    }
    void drop(const QList<QUrl>& urls, QWidget* area) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(area, &enter);
        QDropEvent event({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(area, &event);
    }

private Q_SLOTS:
    void init() {
        LibraryFixture::init();
        m_server.files = {{"setup.exe", smallProgram()},
                          {"page.exe", "<html>"},
                          {"a.yml", Manifest},
                          {"odd.exe", "MZ"},
                          {"app.zip", zipOf({{"App/app.exe", "MZ"}})}};
        open({});
        auto* add = m_window->findChild<QAbstractButton*>("welcome_openbtn");
        QVERIFY(add);
        add->click();
        QVERIFY(page() && page()->isVisible());
        QCOMPARE(shownTab(), QString("add_local_file"));
        QVERIFY(!shown("add_apps_run")->isEnabled());
    }

    void files_data() {
        const Table<QString, QByteArray, QString, QString> row("name", "content", "tab", "reason");
        const QString local = "add_local_file", portable = "add_green_file";
        row("program", "Setup.EXE", "probe", local, "");
        row("no program", "a.exe", "x", local, "It is not a Windows program.");
        row("a page", "b.exe", "<html>", local, "It is a web page");
        row("no package", "a.msi", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", local, "Its content is not");
        row("a program for a package", "b.msi", "probe", local, "Its content is not");
        row("manifest", "a.yml", Manifest, local, "");
        row("other YAML", "b.yml", "a: b", local, "It is no manifest");
        row("shortcut", "a.lnk", "L", local, "It is a shortcut, but it does not lead");
        row("batch", "a.bat", "@echo", local, "");
        row("text", "a.txt", "x", local, "It is not a Windows program.");
        row("gone", "", "", local, "There is no such file.");
        row("archive", "a.zip", zipOf({{"App/app.EXE", "MZ"}}), portable, "");
        row("document", "a.zip", zipOf({{"word/document.xml", "x"}}), local, "There is no Windows program");
        row("no archive", "a.zip", QByteArray("PK\3\4", 4) + QByteArray(40, '\0'), local, "It is damaged");
        row("folder", "app/bin/a.exe/", "probe", portable, "");
        row("folder of a batch file", "app/run.bat/", "@echo", portable, "");
        row("folder without program", "docs/a.txt/", "x", local, "There is no Windows program");
        row("home", "/", "", local, "It holds more than one program");
        row("several", "a.exe b.exe", "probe", local, "");
        row("not together", "a.exe a.zip", "probe", local, "Add one at a time");
        row("other scheme", "smb://nas/a.exe", "", local, "Only files of this computer");
    }
    void files() {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        QList<QUrl> urls;
        for (const QString& one : name.split(' ')) {
            QString path = m_home.path() + "/gone.exe";
            if (one == "/")
                path = m_home.path();
            else if (!one.isEmpty() && !one.contains("://"))
                path = m_home.write(QString(one).remove(QRegularExpression("/$")),
                                    content == "probe" ? smallProgram() : content);
            const bool isFolder = one.size() > 1 && one.endsWith('/');
            urls << QUrl::fromLocalFile(isFolder ? m_home.path() + '/' + one.section('/', 0, 0) : path);
            if (one.contains("://"))
                urls.last() = QUrl(one);
        }
        drop(urls, shown<DropArea>("drop_area"));
        QTRY_COMPARE(text("file_state"), QString(reason.isEmpty() ? Valid : Invalid));
        QCOMPARE(text("file_reason").left(reason.size()), reason);
        QTEST(shownTab(), "tab");
        QCOMPARE(shown("add_apps_run")->isEnabled(), reason.isEmpty());
        if (!reason.isEmpty())
            return;
        const QSignalSpy program(m_window.get(), &Mainwindow::openRequested);
        shown("add_apps_run")->click();
        if (name == "a.yml") {
            QTRY_VERIFY(qobject_cast<SetupAppInfoDialog*>(QApplication::activeModalWidget()));
            QApplication::activeModalWidget()->close();
            return;
        }
        QVERIFY(view()->isVisible());
        QFETCH(QString, tab);
        if (tab == "add_green_file") {
            QCOMPARE(m_service->waitForCall("importPortable").arguments.first().toString(),
                     urls.first().toLocalFile());
            return;
        }
        if (urls.size() > 1)
            m_window->findChild<Fenk::Dialog*>("several_programs_question")->button(1)->click();
        QCOMPARE(program.size(), urls.size());
        QCOMPARE(program.last().first().toString(), urls.last().toLocalFile());
    }

    void online_data() {
        const Table<QString, QString> row("path", "state");
        row("program", "setup.exe", Valid);
        row("manifest", "a.yml", Valid);
        row("archive", "app.zip", Valid);
        row("page", "page.exe", "");
        row("not of Windows", "odd.exe", Invalid);
    }
    void online() {
        QFETCH(QString, path);
        QFETCH(QString, state);
        QApplication::clipboard()->setText(m_server.address(path));
        TestSupport::press(m_window.get(), Qt::Key_Escape);
        QVERIFY(view()->isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
        QTRY_COMPARE(shownTab(), QString("add_online_file"));
        QCOMPARE(TestSupport::outOfReach(m_window.get()), QString());
        auto* address = page()->findChild<Fenk::LineEdit*>();
        QCOMPARE(address->text(), m_server.address(path));
        QTest::keyClick(address->lineEdit(), Qt::Key_Return);
        QTRY_VERIFY(!address->lineEdit()->isReadOnly());
        QTRY_COMPARE(text("file_state"), state);
        QCOMPARE(shown("add_apps_run")->isEnabled(), state == Valid);
        QCOMPARE(QFile::exists(m_home.path() + "/Downloads/" + path), !state.isEmpty());
        if (state == Valid)  // what has come is not fetched again
            QTest::keyClick(address->lineEdit(), Qt::Key_Return);
        QVERIFY(!address->lineEdit()->isReadOnly());
        address->setText("ftp://x/a.exe");
        QVERIFY(!shown("download_btn")->isEnabled() && !shown("add_apps_run")->isEnabled());
    }

    /// A second address has to wait, and the end is told to a user who has left the page.
    void downloadGoesOn() {
        m_window->indexView()->add(QStringList(m_server.address("odd.exe")));
        auto* address = page()->findChild<Fenk::LineEdit*>();
        shown("download_btn")->click();
        m_window->indexView()->add(QStringList(m_server.address("setup.exe")));
        QCOMPARE(address->text(), m_server.address("odd.exe"));
        QVERIFY(address->isAlert());
        shown("add_apps_back")->click();
        QTRY_VERIFY(m_window->findChild<Fenk::FloatingMessage*>());
        QCOMPARE(m_window->findChild<Fenk::FloatingMessage*>()->text().left(3), QString("odd"));
    }

    void windowDrops() {
        TestSupport::press(m_window.get(), Qt::Key_Escape);
        drop({QUrl::fromLocalFile(m_home.write("a.yml", Manifest))}, m_window.get());
        QTRY_COMPARE(text("file_state"), QString(Valid));
        QCOMPARE(shownTab(), QString("add_local_file"));
        // On the page nothing is opened at once, and typing does not lead away.
        const QSignalSpy opened(m_window.get(), &Mainwindow::openRequested);
        TestSupport::press(m_window.get(), Qt::Key_X);
        drop({QUrl::fromLocalFile(m_home.write("b.exe", smallProgram()))}, m_window.get());
        QTRY_COMPARE(text("file_name"), QString("b.exe"));
        QTRY_COMPARE(text("file_state"), QString(Valid));
        QVERIFY(opened.isEmpty());
    }

    void pastesAKeyword() {
        QApplication::clipboard()->setText("ledger");
        m_window->findChild<SearchWidget*>()->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(m_window->findChild<SearchWidget*>()->text(), QString("ledger"));
        QVERIFY(view()->isVisible());
    }

    void keys() {
        shown("online_tab")->setFocus();
        QTest::mouseClick(shown("online_tab"), Qt::LeftButton);
        QCOMPARE(shownTab(), QString("add_online_file"));
        TestSupport::press(m_window.get(), Qt::Key_Right);
        QCOMPARE(shownTab(), QString("add_green_file"));
        TestSupport::press(m_window.get(), Qt::Key_Left);
        QCOMPARE(shownTab(), QString("add_online_file"));
        page()->findChild<QLineEdit*>()->setFocus();
        QTest::mouseClick(shown("local_tab"), Qt::LeftButton);
        QVERIFY(shown("add_local_file_btn")->hasFocus());
        QTest::mouseClick(shown("online_tab"), Qt::LeftButton);
        QVERIFY(page()->findChild<QLineEdit*>()->hasFocus());
    }

    void chosen() {
        for (const auto& [tab, button, filter] :
             {std::tuple("local_tab", "add_local_file_btn", "安装程序、应用程序打包脚本(*.exe *.msi *.yml)"),
              {"portable_tab", "add_green_file_btn", ""}}) {
            shown(tab)->click();
            shown(button)->click();
            auto* dialog = m_window->findChild<QFileDialog*>(QString(button).replace("_btn", "_dialog"));
            QVERIFY(dialog && dialog->isVisible());
            QVERIFY(QString(filter).isEmpty() || dialog->nameFilters() == QStringList(filter));
            Q_EMIT dialog->fileSelected(QFileInfo(m_home.write("app/a.exe", smallProgram())).path());
            dialog->close();
            QTRY_COMPARE(text("file_state"), QString(Valid));
            QCOMPARE(shownTab(), QString("add_green_file"));
        }
    }

    /// Not the source's Chinese. The translators stay, so these are the last.
    void otherLanguages() {
        auto* app = static_cast<Fenk::Application*>(qApp);
        QCoreApplication::setApplicationName("cellarix");
        app->setTranslationsDir(TEST_BINARY_DIR "/translations");
        for (const auto& [locale, expected] : {std::pair("de", "Run"), {"zh_CN", "运行"}}) {
            QCOMPARE(app->loadTranslator({QLocale(locale)}), expected[0] != 'R');
            QCOMPARE(AddingTexts::run(), QString(expected));
        }
    }
};

int main(int argc, char** argv) {
    return runWindowTest<AddingTest>(argc, argv);
}
#include "AddingTest.moc"
