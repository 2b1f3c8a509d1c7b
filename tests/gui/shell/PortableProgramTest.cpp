#include <QClipboard>
#include <QMimeData>
#include <QTreeView>

#include "LibraryFixture.h"
#include "shell/AddDispatcher.h"
#include "shell/DropFrame.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "shell/library/BottleCopyDialog.h"
#include "support/LogCapture.h"
#include "support/SmallProgram.h"
#include "support/Table.h"

using namespace TestSupport;

namespace {
constexpr int ToolMs = 60000;  // the programs are looked at by tools of their own
}

/// What is dropped and pasted in the library, and how a portable program gets into it.
class PortableProgramTest : public LibraryFixture {
    Q_OBJECT

    template <class Widget>
    Widget* find(const char* name) const {
        return m_window->findChild<Widget*>(name);
    }
    ChooseExecutableDialog* choice() const {
        return find<ChooseExecutableDialog>("choose_executable_dialog");
    }
    QString source() const { return m_home.path() + "/App"; }

    void drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({400, 400}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &enter);
        QVERIFY(enter.isAccepted() && find<DropFrame>("drop_frame")->isVisible());
        QDropEvent dropped({400, 400}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(m_window.get(), &dropped);
        QVERIFY(!find<DropFrame>("drop_frame")->isVisible());
    }
    /// Nothing is copied unasked.
    void run() {
        QTRY_VERIFY(find<QAbstractButton>("add_apps_run") &&
                    find<QAbstractButton>("add_apps_run")->isEnabled());
        QVERIFY(m_service->calls("importPortable").isEmpty());
        find<QAbstractButton>("add_apps_run")->click();
    }
    /// The service copies the folder, until the choice of its programs is shown.
    void addFolder() {
        QByteArray program(1024, 0);
        program.replace(0, 2, "MZ");
        for (const char* name : {"unins000.exe", "app.exe", "tools/second.exe"})
            m_home.write(QString("b/drive_c/Program Files/App/") + name, program);
        QDir().mkpath(m_home.path() + "/b/dosdevices");
        QFile::link("../drive_c", m_home.path() + "/b/dosdevices/c:");
        m_service->setBottle(
            "portable-App",
            {{"External_Programs",
              QJsonObject{{"provisional", QJsonObject{{"id", "provisional"},
                                                      {"name", "app"},
                                                      {"path", "C:\\Program Files\\App\\app.exe"}}}}}});
        m_service->setJson("Backup.importPortable", QJsonObject{{"ok", true},
                                                                {"leftOut", QJsonArray{"outer"}},
                                                                {"bottle", "portable-App"},
                                                                {"program", "provisional"},
                                                                {"path", m_home.path() + "/b"},
                                                                {"folder", "C:\\Program Files\\App"}});
        m_home.write("App/app.exe", "MZ");
        openUntil(State::Ready);
        drop({QUrl::fromLocalFile(source())});
        run();
        QCOMPARE(m_service->waitForCall("importPortable").arguments, QJsonArray{source()});
        QTRY_VERIFY_WITH_TIMEOUT(choice() && choice()->isVisible(), ToolMs);
    }

private Q_SLOTS:
    void requests_data() {
        const Table<QString, QString, QString> row("input", "signal", "text");
        row("program", "a.exe", "openRequested", "a.exe");
        row("two programs", "a.exe\nb.bat", "openRequested", "a.exe");
        row("manifest", "a.yml", "pageRequested", "");
        row("address", "https://example.com/a.exe", "pageRequested", "");
        row("missing", "gone.exe", "", "There is no such file.");
    }
    /// Pasted, with the focus in the search field and elsewhere.
    void requests() {
        QFETCH(QString, input);
        QFETCH(QString, signal);
        QFETCH(QString, text);
        for (const char* name : {"a.exe", "b.bat", "a.yml"})
            m_home.write(name, QString(name) == "a.yml" ? "Name: a\nDebInfo: {}\n" : smallProgram());
        QString pasted = input;
        if (!input.contains("://"))
            pasted = m_home.path() + '/' + pasted.replace("\n", "\n" + m_home.path() + '/');
        open({summary("1", "Ledger")});
        for (const bool isSearching : {true, false}) {
            m_window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
            if (!view()->isVisible())
                find<QAbstractButton>("add_apps_back")->click();
            if (!isSearching)
                view()->focusPrograms();
            QTRY_VERIFY(QApplication::focusWidget());
            QSignalSpy opened(m_window.get(), &Mainwindow::openRequested);
            QSignalSpy pages(m_window->addDispatcher(), &AddDispatcher::pageRequested);
            QApplication::clipboard()->setText(pasted);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
            if (input.contains('\n')) {
                QTRY_VERIFY(find<Fenk::Dialog>("several_programs_question"));
                find<Fenk::Dialog>("several_programs_question")->button(1)->click();
                QTRY_VERIFY(!find<Fenk::Dialog>("several_programs_question"));
            }
            if (signal.isEmpty()) {
                QTRY_VERIFY(find<Fenk::Dialog>("add_refusal"));
                auto* dialog = find<Fenk::Dialog>("add_refusal");
                QVERIFY2(dialog->message().contains(text), qPrintable(dialog->message()));
                QTest::keyClick(dialog, Qt::Key_Escape);
                QTRY_VERIFY(!find<Fenk::Dialog>("add_refusal"));
                continue;
            }
            QSignalSpy& spy = signal == "openRequested" ? opened : pages;
            QTRY_COMPARE(spy.count(), input.contains('\n') ? 2 : 1);
            if (!text.isEmpty())
                QCOMPARE(spy[0][0].toString(), m_home.path() + '/' + text);
        }
    }

    void shortcutsInABottle_data() {
        const Table<QJsonObject, QString> row("bottle", "started");
        const QJsonObject known{{"1", QJsonObject{{"path", "c:\\APP\\a.exe"}}}};
        row("known", {{"Path", "/b"}, {"External_Programs", known}}, "lumorawine://office/1");
        row("unknown", {{"Path", "/b"}, {"External_Programs", QJsonObject()}}, "lumorawine://office/");
        row("no bottle", {}, "");
    }
    /// They start in that bottle and nowhere else.
    void shortcutsInABottle() {
        QFETCH(QJsonObject, bottle);
        QFETCH(QString, started);
        m_service->setBottle("office", bottle);
        openUntil(State::Ready);
        AddItem item;
        item.kind = AddItem::Kind::Program;
        item.shown = "App.lnk";
        item.bottle = "office";
        item.windowsPath = "C:\\App\\a.exe";
        const QSignalSpy opened(m_window.get(), &Mainwindow::openRequested);
        m_window->addDispatcher()->carryOut(AddRequest::of({item}));
        QTRY_VERIFY(opened.size() || find<Fenk::Dialog>("add_refusal"));
        QCOMPARE(opened.value(0).value(0).toString().left(started.size()), started);
        QCOMPARE(opened.isEmpty(), started.isEmpty());
        const auto entered = m_service->calls("updateExternalProgram");
        QCOMPARE(entered.size(), started.endsWith('/') ? 1 : 0);
        if (!entered.isEmpty())
            QVERIFY(opened[0][0].toString().endsWith(
                QJsonDocument::fromJson(entered[0].arguments[1].toString().toUtf8())["id"].toString()));
    }

    /// The service's entry becomes the likely one's; the second can't be entered, after which the user wants
    /// only the third.
    void portable() {
        const LogCapture log;
        addFolder();
        QSignalSpy opened(m_window.get(), &Mainwindow::openRequested);
        auto* list = choice()->findChild<QTreeView*>("executables_list");
        const auto place = [list](int row) { return list->model()->index(row, 1).data().toString(); };
        QCOMPARE(list->model()->rowCount(), 3);
        QCOMPARE(place(0), QString("app.exe"));
        QCOMPARE(place(2), QString("unins000.exe"));
        QCOMPARE(log.count("Append program: "), 3);
        QCOMPARE(log.count("Program already exists: "), 1);
        QVERIFY(choice()->message().contains("Not copied") && choice()->message().endsWith("outer"));
        QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
        m_service->setAnswers("Bottles.updateExternalProgram",
                              {{{"text", ""}}, {{"error", "no"}}, {{"text", ""}}});
        QTest::mouseClick(choice()->button(1), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(choice()->message().contains("second could not be added"), ToolMs);
        const auto recordOf = [](const RecordedCall& call) {
            return QJsonDocument::fromJson(call.arguments[1].toString().toUtf8()).object();
        };
        QCOMPARE(recordOf(m_service->calls("updateExternalProgram")[0]),
                 (QJsonObject{
                     {"id", "provisional"}, {"name", "app"}, {"path", "C:\\Program Files\\App\\app.exe"}}));
        list->setCurrentIndex(list->model()->index(2, 0));
        m_service->setError("Bottles.removeExternalProgram", "no");
        QTest::keyClick(list, Qt::Key_Return);
        const QJsonObject third = recordOf(m_service->waitForCall("updateExternalProgram", 3));
        QCOMPARE(m_service->waitForCall("removeExternalProgram").arguments,
                 QJsonArray({"portable-App", "provisional"}));
        QTRY_COMPARE_WITH_TIMEOUT(opened.count(), 1, ToolMs);
        QCOMPARE(opened[0][0].toString(), "lumorawine://portable-App/" + third["id"].toString());
        QVERIFY(find<Fenk::Dialog>("portable_message"));
        QTRY_VERIFY_WITH_TIMEOUT(!choice() && !PendingWork::instance()->isPending(), ToolMs);
    }

    /// Nothing stays: the bottle is new.
    void cancelled() {
        addFolder();
        QTest::keyClick(choice(), Qt::Key_Escape);
        QCOMPARE(m_service->waitForCall("delete").arguments, QJsonArray{"portable-App"});
        QVERIFY(m_service->calls("updateExternalProgram").isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!PendingWork::instance()->isPending(), ToolMs);
    }

    /// While the programs are looked at, which waits for the bottle's record here.
    void cancelledWhileLooking() {
        m_service->setHeld("Bottles.get:portable-App", "{}");
        m_service->setJson("Backup.importPortable", QJsonObject{{"ok", true}, {"bottle", "portable-App"}});
        m_home.write("App/app.exe", "MZ");
        openUntil(State::Ready);
        drop({QUrl::fromLocalFile(source())});
        run();
        m_service->waitForCall("get");
        QTest::keyClick(find<BottleCopyDialog>("bottle_copy_dialog"), Qt::Key_Escape);
        QCOMPARE(m_service->waitForCall("delete").arguments, QJsonArray{"portable-App"});
        m_service->release("get");
        QTRY_VERIFY_WITH_TIMEOUT(!PendingWork::instance()->isPending(), ToolMs);
        QVERIFY(!choice());
    }

    /// The service was done before it heard of it.
    void cancelledTooLate() {
        m_service->setHeld("Backup.importPortable", R"({"ok":true,"bottle":"portable-App"})");
        m_home.write("App/app.exe", "MZ");
        openUntil(State::Ready);
        drop({QUrl::fromLocalFile(source())});
        run();
        m_service->waitForCall("importPortable");
        QTest::mouseClick(find<BottleCopyDialog>("bottle_copy_dialog")->button(0), Qt::LeftButton);
        m_service->waitForCall("cancelBottleCopy");
        m_service->release("importPortable");
        QCOMPARE(m_service->waitForCall("delete").arguments, QJsonArray{"portable-App"});
        QVERIFY(!choice());
    }

    /// What was copied is not lost with the window.
    void windowGone() {
        addFolder();
        m_window.reset();
        QVERIFY(m_service->waitForCall("updateExternalProgram").arguments[1].toString().contains("app.exe"));
        QTRY_VERIFY_WITH_TIMEOUT(!PendingWork::instance()->isPending(), ToolMs);
    }

    void serviceGone() {
        addFolder();
        m_service->kill();
        QTest::mouseClick(choice()->button(1), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(choice()->message().contains("could not be added"), ToolMs);
        QTest::keyClick(choice(), Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(!choice() && find<Fenk::Dialog>("portable_message"), ToolMs);
    }

    void refused() {
        m_service->setText("Backup.importPortable",
                           R"({"ok":false,"reasons":[{"code":"no-programs","arguments":["App"]}]})");
        m_home.write("App/app.exe", "MZ");
        openUntil(State::Ready);
        drop({QUrl::fromLocalFile(source())});
        run();
        QTRY_VERIFY_WITH_TIMEOUT(find<BottleCopyDialog>("bottle_copy_dialog"), ToolMs);
        QTRY_COMPARE(find<BottleCopyDialog>("bottle_copy_dialog")->title(),
                     QString("App could not be added."));
    }
};

int main(int argc, char** argv) {
    return runWindowTest<PortableProgramTest>(argc, argv);
}
#include "PortableProgramTest.moc"
