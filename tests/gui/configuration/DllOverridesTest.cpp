#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QPushButton>
#include <QTreeWidget>

#include "TableFixture.h"
#include "fenk/window/Dialog.h"
#include "manifest/SettingRules.h"
#include "shell/configuration/dlls/DllNames.h"
#include "shell/configuration/dlls/DllOverrideItemDelegate.h"
#include "shell/configuration/dlls/DllOverrideListView.h"
#include "shell/configuration/dlls/DllOverridePage.h"
#include "shell/configuration/dlls/LoadMethods.h"

using TestSupport::Table;
using F = TableFixture<DllOverridePage, DllOverrideListView>;
using Action = std::function<void(F&)>;
Q_DECLARE_METATYPE(Action)

/// Every edit is what the service is told, and the table shows what it has.
class DllOverridesTest : public QObject {
    Q_OBJECT

    const QJsonObject m_list{{"d3d9", "n,b"}, {"mshtml", ""}, {"zlib", "b"}};
    std::unique_ptr<F> m_f;

    Fenk::Dialog* scan(int entry) {
        m_f->page.findChild<QPushButton*>("dlloverride_scanbtn")->menu()->actions()[entry]->trigger();
        const auto preview = [this] { return m_f->page.findChild<Fenk::Dialog*>("scan_dialog"); };
        return QTest::qWaitFor([&] { return preview(); }) ? preview() : nullptr;
    }

private Q_SLOTS:
    void init() { m_f = std::make_unique<F>("listDllOverrides", m_list); }
    void cleanup() { m_f.reset(); }

    void loadMethods_data() {
        const Table<QString, int, QString> row("value", "method", "sent");
        row("native", "n", 0, "n");
        row("builtin", "b", 1, "b");
        row("both", "n,b", 2, "n,b");
        row("words", "builtin, native", 3, "b,n");
        row("off", "", 4, "");
        row("unknown", "x", 0, "n");
    }
    void loadMethods() {
        QFETCH(QString, value);
        QTEST(LoadMethods::ofWireValue(value), "method");
        QTEST(LoadMethods::wireValue(LoadMethods::ofWireValue(value)), "sent");
        QCOMPARE(LoadMethods::wireValue(-1), QString("n"));
    }

    void names() {
        const TestSupport::LogCapture log;
        QCOMPARE(DllOverrideItemDelegate::builtinDlls("/nonexistent"), QStringList());
        QVERIFY(log.contains(QtWarningMsg, "Failed to open builtin_dlls.txt"));
        QCOMPARE(TestSupport::readFile(":/data/builtin_dlls.txt").count('\n'), 591);
        QVERIFY(DllOverrideItemDelegate::builtinDlls().contains("d3d9"));
    }

    /// The rule is the service's.
    void goodNames() {
        for (const char* name : {"d3d9", "*a", "my updater.exe", "", "a;b", "a=b", "a,b", "a\"b", "a*", "**a",
                                 "a/b", "a\\b", "c:a", " a", "a\nb", "*", "名"})
            QVERIFY2(DllNames::isGood(name) == SettingRules::isDllName(name), name);
        QVERIFY(DllNames::isGood(QString(255, 'a')) && !DllNames::isGood(QString(256, 'a')));
    }

    void edits_data() {
        const Table<Action, QStringList, QStringList> row("action", "sent", "shown");
        const QString d = "d3d9=Native then Builtin", m = "mshtml=Disabled", z = "zlib=Builtin (Wine)";
        const QString d1 = "d3d9=Builtin (Wine)", m1 = "mshtml=Builtin (Wine)";
        row("load", [](F&) {}, {}, {d, m, z});
        row("name", [](F& f) { f.edit(1, 0, " New "); }, {"-mshtml", "New="}, {d, "New=Disabled", z});
        row("case", [](F& f) { f.edit(1, 0, "MSHTML"); }, {"-mshtml", "MSHTML="}, {d, "MSHTML=Disabled", z});
        row("no name", [](F& f) { f.edit(1, 0, ""); }, {}, {d, m, z});
        row("name of another", [](F& f) { f.edit(1, 0, "ZLIB"); }, {}, {d, m, z});
        row("module of another", [](F& f) { f.edit(1, 0, "Zlib.DLL"); }, {}, {d, m, z});
        row("bad name", [](F& f) { f.edit(1, 0, "a=b"); }, {}, {d, m, z});
        row("escape", [](F& f) { f.edit(1, 0, "new", Qt::Key_Escape); }, {}, {d, m, z});
        row("new row", [](F& f) { f.add("X"); }, {"X=n,b"}, {"X=Native then Builtin", d, m, z});
        row("new row without name", [](F& f) { f.add(""); }, {}, {d, m, z});
        row("new row of another's name", [](F& f) { f.add("zlib"); }, {}, {d, m, z});
        const Action allBuiltin = [](F& f) {
            f.choose({"d3d9", "mshtml", "zlib"});
            f.trigger("Set to .../Builtin (Wine)");
        };
        row("methods", allBuiltin, {"d3d9=b", "mshtml=b"}, {d1, m1, z});
        row("delete", [](F& f) { f.remove({"d3d9", "zlib"}); }, {"-zlib", "-d3d9"}, {m});
        const Action undo = [](F& f) {
            f.remove({"d3d9", "zlib"});
            f.table->undo();
        };
        row("undo", undo, {"-zlib", "-d3d9", "d3d9=n,b", "zlib=b"}, {d, m, z});
    }
    void edits() {
        QFETCH(Action, action);
        QFETCH(QStringList, sent);
        QVERIFY(m_f->open());
        action(*m_f);
        QTEST(m_f->shown(), "shown");
        QTRY_COMPARE(m_f->changes(), sent);
    }

    /// Nothing is chosen but in the list.
    void closedEditor_data() {
        const Table<int, int> row("column", "key");
        for (int column : {0, 1}) {
            row("wheel", column, 0);
            row("down", column, Qt::Key_Down);
            row("page", column, Qt::Key_PageUp);
        }
        row("letter", 1, Qt::Key_D);
    }
    void closedEditor() {
        QFETCH(int, column);
        QFETCH(int, key);
        QVERIFY(m_f->open());
        m_f->table->setCurrentIndex(m_f->table->rows()->index(0, column));
        QTest::keyClick(m_f->table, Qt::Key_F2);
        QComboBox* editor = m_f->editor();
        if (column == 1)
            QTRY_VERIFY(editor->view()->isVisible());
        editor->hidePopup();
        QTRY_VERIFY(!editor->view()->isVisible());
        const int before = editor->currentIndex();
        if (key)
            QTest::keyClick(editor, Qt::Key(key));
        else
            m_f->turnWheel(editor);
        QVERIFY(m_f->editor() && editor->currentIndex() == before);
        QCOMPARE(editor->view()->isVisible(), key != 0);
        editor->hidePopup();
        QTest::keyClick(editor, Qt::Key_Escape);
        QTRY_VERIFY(!m_f->editor());
        m_f->add("last");
        QTRY_COMPARE(m_f->changes(), QStringList{"last=n,b"});
    }

    void scans() {
        m_f->service.setJson("getExternalProgramsDllList", QJsonArray{"D3D9", "ZLIB", "Own", "Other"});
        m_f->service.setJson("getExternalProgramsUpdateExes", QJsonArray{"Updater.exe"});
        QVERIFY(m_f->open());
        const QStringList before = m_f->shown();
        const TestSupport::LogCapture log;
        Fenk::Dialog* preview = scan(0);
        QVERIFY(preview && log.contains(QtInfoMsg, R"(["D3D9","ZLIB","Own","Other"])"));
        auto* list = preview->findChild<QTreeWidget*>();
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(list->topLevelItem(0)->text(1), QString("Builtin (Wine) → Native then Builtin"));
        list->topLevelItem(2)->setCheckState(0, Qt::Unchecked);
        auto* all = preview->findChild<QCheckBox*>("scan_all");
        QCOMPARE(all->checkState(), Qt::PartiallyChecked);
        all->click();
        all->click();
        QVERIFY(!preview->button(1)->isEnabled());
        for (int i : {0, 1})
            list->topLevelItem(i)->setCheckState(0, Qt::Checked);
        preview->button(1)->click();
        QTRY_COMPARE(m_f->changes(), QStringList({"zlib=n,b", "own=n,b"}));
        m_f->table->undo();
        QTRY_COMPARE(m_f->changes().mid(2), QStringList({"-own", "zlib=b"}));
        QCOMPARE(m_f->shown(), before);
        QTRY_VERIFY(!m_f->page.findChild<Fenk::Dialog*>("scan_dialog"));
        scan(1)->button(1)->click();
        QTRY_COMPARE(m_f->changes().last(), QString("updater.exe="));
    }

    void scanIsCancelled() {
        m_f->service.setHeld("getExternalProgramsDllList", R"(["own"])");
        m_f->service.setJson("getExternalProgramsUpdateExes", QJsonArray{"updater.exe"});
        QVERIFY(m_f->open());
        auto* button = m_f->page.findChild<QPushButton*>("dlloverride_scanbtn");
        button->setFocus();
        button->menu()->actions()[0]->trigger();
        m_f->service.waitForCall("getExternalProgramsDllList");
        auto* cancel = m_f->page.findChild<QPushButton*>("dlloverride_cancelbtn");
        QVERIFY(cancel->hasFocus() && !button->isVisible());
        QTest::keyClick(cancel, Qt::Key_Space);
        QVERIFY(button->hasFocus() && !cancel->isVisible());
        m_f->service.release();
        Fenk::Dialog* preview = scan(1);
        QVERIFY(preview);
        QCOMPARE(preview->findChild<QTreeWidget*>()->topLevelItem(0)->text(0), QString("updater.exe"));
        QCOMPARE(m_f->page.findChildren<Fenk::Dialog*>("scan_dialog").size(), 1);
    }

    void answersInDisorder() {
        m_f->service.setAnswers("listDllOverrides", {{{"text", R"({"d3d9": "n"})"}},
                                                     {{"text", R"({"old": "n"})"}, {"hold", true}},
                                                     {{"text", R"({"new": "b"})"}}});
        QVERIFY(m_f->open());
        m_f->table->load();
        m_f->service.waitForCall("listDllOverrides", 2);
        m_f->edit(0, 0, "mine");
        m_f->service.waitForCall("listDllOverrides", 3);
        m_f->service.release();
        QTRY_COMPARE(m_f->shown(), QStringList{"new=Builtin (Wine)"});
    }

    void placeIsKept() {
        QJsonObject list;
        for (int i = 10; i < 90; ++i)
            list.insert(QString("dll%1").arg(i), "n");
        m_f->service.setJson("listDllOverrides", list);
        QVERIFY(m_f->open());
        m_f->table->merge({"dll40", "dll85"}, 1);
        const auto isShown = [this](int row) {
            return m_f->table->viewport()->rect().intersects(
                m_f->table->visualRect(m_f->table->rows()->index(row, 0)));
        };
        QVERIFY(isShown(30) && !isShown(75));
        m_f->choose({"dll41", "dll43"});
        m_f->table->selectionModel()->setCurrentIndex(m_f->table->rows()->index(31, 1),
                                                      QItemSelectionModel::NoUpdate);
        m_f->table->undo();
        QVERIFY(isShown(30));
        QCOMPARE(m_f->table->selectedRows(), QList<int>({31, 33}));
        QCOMPARE(m_f->table->currentIndex(), m_f->table->rows()->index(31, 1));
    }

    void editorStaysOpen() {
        QVERIFY(m_f->open());
        m_f->service.setText("listDllOverrides", R"({"brought": "n"})");
        m_f->table->addNewOverride();
        QSignalSpy loaded(m_f->table, &BottleTable::loaded);
        QVERIFY(m_f->service.emitSignal("component_setup_done", "ssss", {"office", "dxvk", "x", "{}"}));
        QVERIFY(loaded.wait() && m_f->editor());
        m_f->type("", Qt::Key_Escape);
        QCOMPARE(m_f->shown(), QStringList{"brought=Native (Windows)"});
    }

    void refusedEdits() {
        m_f->service.setError("updateDllOverride", "no");
        QVERIFY(m_f->open());
        QSignalSpy refused(m_f->table, &BottleTable::refused);
        const QStringList before = m_f->shown();
        m_f->remove({"d3d9", "zlib"});
        QTRY_COMPARE(m_f->shown(), before);
        QCOMPARE(refused.count(), 1);
        QCOMPARE(refused[0][0].toString(), QString("zlib could not be changed: no"));
    }

    /// What was done of a step can be taken back.
    void partlyRefused() {
        QVERIFY(m_f->open());
        m_f->service.setAnswers("updateDllOverride", {{{"error", "no"}}, {{"text", ""}}});
        m_f->service.setJson("listDllOverrides", QJsonObject{{"mshtml", ""}, {"zlib", "b"}});
        QSignalSpy replaced(m_f->table, &BottleTable::replaced);
        m_f->remove({"d3d9", "zlib"});
        QTRY_COMPARE(m_f->shown(), QStringList({"mshtml=Disabled", "zlib=Builtin (Wine)"}));
        QCOMPARE(replaced.count(), 0);
        m_f->table->undo();
        QTRY_COMPARE(m_f->changes().mid(2), QStringList{"d3d9=n,b"});
    }

    void usableByKeys() {
        QVERIFY(m_f->open());
        QCOMPARE(TestSupport::outOfReach(&m_f->page), QString());
        m_f->table->setFocus();
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {});
        QApplication::sendEvent(m_f->table->viewport(), &menuKey);
        auto* menu = m_f->table->findChild<QMenu*>("table_menu");
        QVERIFY(menu && menu->activeAction());
        delete menu;
        m_f->table->clear();
        QCOMPARE(TestSupport::outOfReach(&m_f->page), QString());
    }

    /// Whatever the user does, the calls make of the first list what the table shows.
    void callsGiveWhatIsShown() {
        QVERIFY(m_f->open());
        QRandomGenerator random(7);
        const QStringList names{"", "a", "A", "b", "c.exe", "d3d9", "zlib", "e"};
        const auto name = [&] { return names[random.bounded(names.size())]; };
        const std::function<void(int)> actions[] = {
            [&](int) { m_f->add(name()); },
            [&](int) { m_f->table->undo(); },
            [&](int) {
                m_f->table->merge({name() + 'x', name() + 'Y'}, random.bounded(5));
            },
            [&](int row) { m_f->remove(row); },
            [&](int row) { m_f->edit(row, 0, name()); },
            [&](int row) {
                m_f->table->rows()->item(row, 1)->setData(random.bounded(5), DllOverrideListView::MethodRole);
            }};
        m_f->play(&random, actions);
        m_f->add("last");
        QTRY_COMPARE(m_f->changes().last(), QString("last=n,b"));
        TableRows shown, expected = m_f->replayed(m_list);
        for (const QString& line : m_f->shown())
            shown[line.section('=', 0, 0)] = line.section('=', 1);
        for (QString& value : expected)
            value = LoadMethods::text(LoadMethods::ofWireValue(value));
        QCOMPARE(shown, expected);
    }
};

int main(int argc, char** argv) {
    return runTableTest<DllOverridesTest>(argc, argv);
}
#include "DllOverridesTest.moc"
