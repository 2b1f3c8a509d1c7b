#include <QAbstractButton>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTreeWidget>

#include "TableFixture.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/dlls/DllOverrideItemDelegate.h"
#include "shell/configuration/dlls/DllOverrideListView.h"
#include "shell/configuration/dlls/DllOverridePage.h"
#include "shell/configuration/dlls/LoadMethods.h"

using TestSupport::Table;
using Fixture = TableFixture<DllOverridePage, DllOverrideListView>;
using Action = std::function<void(Fixture&)>;
Q_DECLARE_METATYPE(Action)

/// Every edit is what the service is told, and the table shows what it has.
class DllOverridesTest : public QObject {
    Q_OBJECT

    const QJsonObject m_list{{"d3d9", "n,b"}, {"mshtml", ""}, {"zlib", "b"}};
    std::unique_ptr<Fixture> m_fixture;

    QStringList changes() const { return m_fixture->changes({"updateDllOverride"}); }
    void scan(int entry) {
        m_fixture->page.findChild<QPushButton*>("dlloverride_scanbtn")->menu()->actions()[entry]->trigger();
    }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<Fixture>("listDllOverrides", m_list); }
    void cleanup() { m_fixture.reset(); }

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
        QFile list(":/data/builtin_dlls.txt");
        QVERIFY(list.open(QIODevice::ReadOnly));
        QCOMPARE(list.readAll().count('\n'), 591);
        QVERIFY(DllOverrideItemDelegate::builtinDlls().contains("d3d9"));
    }

    void edits_data() {
        const Table<Action, QStringList, QStringList> row("action", "sent", "shown");
        const QString d3d9 = "d3d9=Native then Builtin", mshtml = "mshtml=Disabled",
                      zlib = "zlib=Builtin (Wine)";
        row("load", [](Fixture&) {}, {}, {d3d9, mshtml, zlib});
        row("method",
            [](Fixture& f) { f.table->rows()->item(0, 1)->setData(0, DllOverrideListView::MethodRole); },
            {"d3d9|n|false"}, {"d3d9=Native (Windows)", mshtml, zlib});
        row("name", [](Fixture& f) { f.edit(1, 0, " MSHTML2 "); }, {"mshtml||true", "MSHTML2||false"},
            {d3d9, "MSHTML2=Disabled", zlib});
        row("name in capitals", [](Fixture& f) { f.edit(0, 0, "D3D9"); }, {"d3d9||true", "D3D9|n,b|false"},
            {"D3D9=Native then Builtin", mshtml, zlib});
        row("no name", [](Fixture& f) { f.edit(1, 0, ""); }, {}, {d3d9, mshtml, zlib});
        row("name of another", [](Fixture& f) { f.edit(1, 0, "ZLIB"); }, {}, {d3d9, mshtml, zlib});
        row("escape", [](Fixture& f) { f.edit(1, 0, "new", Qt::Key_Escape); }, {}, {d3d9, mshtml, zlib});
        row("new row",
            [](Fixture& f) {
                f.table->addNewOverride();
                f.type("Ole32");
            },
            {"Ole32|n,b|false"}, {"Ole32=Native then Builtin", d3d9, mshtml, zlib});
        row("new row by key",
            [](Fixture& f) {
                QTest::keyClick(f.table, Qt::Key_Insert);
                f.type("x", Qt::Key_Escape);
            },
            {}, {d3d9, mshtml, zlib});
        row("new row of another's name",
            [](Fixture& f) {
                f.table->addNewOverride();
                f.type("zlib");
            },
            {}, {d3d9, mshtml, zlib});
        row("several methods",
            [](Fixture& f) {
                f.choose({"d3d9", "mshtml", "zlib"});
                f.trigger("Set to .../Builtin (Wine)");
            },
            {"d3d9|b|false", "mshtml|b|false"}, {"d3d9=Builtin (Wine)", "mshtml=Builtin (Wine)", zlib});
        row("delete",
            [](Fixture& f) {
                f.choose({"d3d9", "zlib"});
                f.trigger("Delete selected");
            },
            {"zlib||true", "d3d9||true"}, {mshtml});
        row("undo",
            [](Fixture& f) {
                f.choose({"d3d9", "zlib"});
                QTest::keyClick(f.table, Qt::Key_Delete);
                f.table->undo();
            },
            {"zlib||true", "d3d9||true", "d3d9|n,b|false", "zlib|b|false"}, {d3d9, mshtml, zlib});
    }
    void edits() {
        QFETCH(Action, action);
        QFETCH(QStringList, sent);
        QVERIFY(m_fixture->open());
        action(*m_fixture);
        QTEST(m_fixture->shown(), "shown");
        if (!sent.isEmpty())
            m_fixture->service.waitForCall("updateDllOverride", sent.size());
        QCOMPARE(changes(), sent);
    }

    void methodIsChosen() {
        QVERIFY(m_fixture->open());
        m_fixture->table->setCurrentIndex(m_fixture->table->rows()->index(0, 1));
        QTest::keyClick(m_fixture->table, Qt::Key_F2);
        QTRY_VERIFY(m_fixture->editor()->view()->isVisible());
        QTest::keyClick(m_fixture->editor()->view(), Qt::Key_Down);
        QTest::keyClick(m_fixture->editor()->view(), Qt::Key_Return);
        QTRY_VERIFY(!m_fixture->editor());
        m_fixture->service.waitForCall("updateDllOverride");
        QCOMPARE(changes(), QStringList{"d3d9|b,n|false"});
    }

    void scans() {
        m_fixture->service.setJson("getExternalProgramsDllList", QJsonArray{"D3D9", "ZLIB", "Own", "Other"});
        m_fixture->service.setJson("getExternalProgramsUpdateExes", QJsonArray{"Updater.exe"});
        QVERIFY(m_fixture->open());
        const QStringList before = m_fixture->shown();
        const TestSupport::LogCapture log;
        const auto preview = [this] { return m_fixture->page.findChild<Fenk::Dialog*>("scan_dialog"); };
        scan(0);
        QTRY_VERIFY(preview());
        QVERIFY(log.contains(QtInfoMsg, R"(["D3D9","ZLIB","Own","Other"])"));
        auto* list = preview()->findChild<QTreeWidget*>();
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(list->topLevelItem(0)->text(1), QString("Builtin (Wine) → Native then Builtin"));
        list->topLevelItem(2)->setCheckState(0, Qt::Unchecked);
        preview()->button(1)->click();
        m_fixture->service.waitForCall("updateDllOverride", 2);
        QCOMPARE(changes(), QStringList({"zlib|n,b|false", "own|n,b|false"}));
        m_fixture->table->undo();
        m_fixture->service.waitForCall("updateDllOverride", 4);
        QCOMPARE(m_fixture->shown(), before);
        QCOMPARE(changes().mid(2), QStringList({"own||true", "zlib|b|false"}));
        QTRY_VERIFY(!preview());
        scan(1);
        QTRY_VERIFY(preview());
        preview()->button(1)->click();
        m_fixture->service.waitForCall("updateDllOverride", 5);
        QCOMPARE(changes().last(), QString("updater.exe||false"));
    }

    void answersInDisorder() {
        m_fixture->service.setAnswers("listDllOverrides", {{{"text", R"({"d3d9": "n"})"}},
                                                           {{"text", R"({"old": "n"})"}, {"hold", true}},
                                                           {{"text", R"({"new": "b"})"}}});
        QVERIFY(m_fixture->open());
        m_fixture->table->load();
        m_fixture->service.waitForCall("listDllOverrides", 2);
        m_fixture->edit(0, 0, "mine");
        m_fixture->service.waitForCall("listDllOverrides", 3);
        m_fixture->service.release();
        QTRY_COMPARE(m_fixture->shown(), QStringList{"new=Builtin (Wine)"});
    }

    void editorStaysOpen() {
        QVERIFY(m_fixture->open());
        m_fixture->service.setText("listDllOverrides", R"({"d3d9": "n", "brought": "n"})");
        m_fixture->table->addNewOverride();
        QSignalSpy loaded(m_fixture->table, &BottleTable::loaded);
        QVERIFY(m_fixture->service.emitSignal("component_setup_done", "ssss", {"office", "dxvk", "x", "{}"}));
        QVERIFY(loaded.wait());
        QVERIFY(m_fixture->editor());
        m_fixture->type("", Qt::Key_Escape);
        QTRY_COMPARE(m_fixture->shown(), QStringList({"brought=Native (Windows)", "d3d9=Native (Windows)"}));
    }

    void refusedEdits_data() {
        const Table<bool> row("dies");
        row("refused", false);
        row("service ends", true);
    }
    void refusedEdits() {
        QFETCH(bool, dies);
        QVERIFY(m_fixture->open());
        if (dies)
            m_fixture->service.setVanish("updateDllOverride");
        else
            m_fixture->service.setError("updateDllOverride", "no");
        QSignalSpy refused(m_fixture->table, &BottleTable::refused);
        const QStringList before = m_fixture->shown();
        m_fixture->choose({"d3d9", "zlib"});
        QTest::keyClick(m_fixture->table, Qt::Key_Delete);
        QTRY_COMPARE(refused.count(), 1);
        if (!dies)
            QTRY_COMPARE(m_fixture->shown(), before);
    }

    void usableByKeys() {
        QVERIFY(m_fixture->open());
        QCOMPARE(TestSupport::outOfReach(&m_fixture->page), QString());
        m_fixture->table->clear();
        QCOMPARE(TestSupport::outOfReach(&m_fixture->page), QString());
    }

    /// Whatever the user does, the calls make of the first list what the table shows.
    void callsGiveWhatIsShown() {
        QVERIFY(m_fixture->open());
        QRandomGenerator random(7);
        const QStringList names{"", "a", "A", "b", "c.exe", "d3d9", "zlib", "e"};
        const auto name = [&] { return names[random.bounded(names.size())]; };
        for (int i = 0; i < 300; ++i) {
            QStandardItemModel* rows = m_fixture->table->rows();
            const int row = rows->rowCount() ? random.bounded(rows->rowCount()) : -1;
            switch (random.bounded(6)) {
                case 0:
                    m_fixture->table->addNewOverride();
                    m_fixture->type(name());
                    break;
                case 1:
                    m_fixture->table->undo();
                    break;
                case 2:
                    m_fixture->table->merge({name() + 'x', name() + 'Y'}, random.bounded(5));
                    break;
                case 3:
                    m_fixture->choose({name(), name()});
                    QTest::keyClick(m_fixture->table, Qt::Key_Delete);
                    break;
                default:
                    if (row >= 0 && random.bounded(2))
                        m_fixture->edit(row, 0, name());
                    else if (row >= 0)
                        rows->item(row, 1)->setData(random.bounded(5), DllOverrideListView::MethodRole);
            }
        }
        m_fixture->table->addNewOverride();
        m_fixture->type("last");
        QTRY_COMPARE(changes().last(), QString("last|n,b|false"));
        QMap<QString, QString> model;
        for (auto it = m_list.begin(); it != m_list.end(); ++it)
            model[it.key()] = it.value().toString();
        for (const QString& call : changes()) {
            const QStringList words = call.split('|');
            if (words[2] == "true")
                model.remove(words[0]);
            else
                model[words[0]] = words[1];
        }
        QStringList expected;
        for (auto it = model.begin(); it != model.end(); ++it)
            expected << it.key() + '=' + LoadMethods::text(LoadMethods::ofWireValue(it.value()));
        QStringList shown = m_fixture->shown();
        shown.sort();
        expected.sort();
        QCOMPARE(shown, expected);
    }
};

int main(int argc, char** argv) {
    return runTableTest<DllOverridesTest>(argc, argv);
}
#include "DllOverridesTest.moc"
