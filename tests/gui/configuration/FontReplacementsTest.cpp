#include <QAbstractButton>
#include <QContextMenuEvent>
#include <QFontDialog>
#include <QPushButton>

#include "TableFixture.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/fonts/FontNames.h"
#include "shell/configuration/fonts/FontReplaceDialog.h"
#include "shell/configuration/fonts/FontReplacementListView.h"
#include "shell/configuration/fonts/FontReplacementPage.h"

using TestSupport::Table;
using F = TableFixture<FontReplacementPage, FontReplacementListView>;
using Action = std::function<void(F&)>;
Q_DECLARE_METATYPE(Action)

/// Every edit is what the service is told, and the table shows what it has.
class FontReplacementsTest : public QObject {
    Q_OBJECT

    const QJsonObject m_list{{"Arial", "Sans"}, {"宋体", "Serif"}};
    std::unique_ptr<F> m_f;

private Q_SLOTS:
    void init() { m_f = std::make_unique<F>("listFontReplacements", m_list); }
    void cleanup() { m_f.reset(); }

    void names() {
        const QStringList windows = FontNames::ofWindows();
        QCOMPARE(windows.mid(0, 4), QStringList({"微软雅黑", "微软雅黑 Bold", "Arial", "Arial Black"}));
        QCOMPARE(FontNames::withoutFoundry("D050000L [urw]"), QString("D050000L"));
        QCOMPARE(QSet<QString>(windows.begin(), windows.end()).size(), windows.size());
    }

    void edits_data() {
        const Table<Action, QStringList, QStringList> row("action", "sent", "shown");
        const QString a = "Arial=Sans", s = "宋体=Serif";
        const Action filled = [](F& f) {
            f.add("T");
            f.edit(0, 1, "X");
        };
        const Action idle = [](F& f) {
            f.service.setError("removeFontReplacement", "no such font");
            f.table->addNewReplacements("T");
            f.remove({"T"});
        };
        const Action undo = [](F& f) {
            f.remove({"宋体"});
            f.table->undo();
        };
        row("load", [](F&) {}, {}, {s, a});
        row("replacement", [](F& f) { f.edit(1, 1, "X"); }, {"Arial=X"}, {s, "Arial=X"});
        row("half a row", [](F& f) { f.table->addNewReplacements("T"); }, {}, {"T=", s, a});
        row("filled", filled, {"T=X"}, {"T=X", s, a});
        row("again", [](F& f) { f.table->addNewReplacements("Arial", "X"); }, {"Arial=X"}, {"Arial=X", s});
        row("case", [](F& f) { f.table->addNewReplacements("ARIAL", "X"); }, {"ARIAL=X"}, {"ARIAL=X", s});
        row("other font", [](F& f) { f.edit(1, 0, "T"); }, {"T=Sans"}, {s, "T=Sans", a});
        row("cleared", [](F& f) { f.edit(1, 1, ""); }, {}, {s, a});
        row("delete", [](F& f) { f.remove({"宋体", "Arial"}); }, {"-Arial", "-宋体"}, {});
        row("delete what was never sent", idle, {"-T"}, {s, a});
        row("undo", undo, {"-宋体", "宋体=Serif"}, {s, a});
    }
    void edits() {
        QFETCH(Action, action);
        QFETCH(QStringList, sent);
        const TestSupport::LogCapture log;
        QVERIFY(m_f->open());
        QCOMPARE(log.count("load font replacement: "), 2);
        QSignalSpy refused(m_f->table, &BottleTable::refused);
        action(*m_f);
        QTEST(m_f->shown(), "shown");
        QTRY_COMPARE(m_f->changes(), sent);
        QCOMPARE(refused.count(), 0);
    }

    /// A list that is not known is not taken for an empty one.
    void unreadList() {
        m_f->service.setError("listFontReplacements", "no bottle");
        const TestSupport::LogCapture log;
        QVERIFY(m_f->open());
        QVERIFY(log.contains(QtWarningMsg, "listFontReplacements error: no bottle"));
        auto* add = m_f->page.findChild<QAbstractButton*>("fontreplacement_addbtn");
        QVERIFY(!add->isEnabled() && !m_f->table->isVisible());
        m_f->service.setJson("listFontReplacements", m_list);
        for (auto* placeholder : m_f->page.findChildren<ListPlaceholder*>()) {
            if (placeholder->isVisible())
                placeholder->button()->click();
        }
        QTRY_COMPARE(m_f->shown().size(), 2);
        QTRY_VERIFY(add->isEnabled() && m_f->table->isVisible());
    }

    void defaults() {
        m_f->service.setJson("listFontReplacements", QJsonObject());
        QVERIFY(m_f->open());
        auto* empty = m_f->page.findChild<ListPlaceholder*>();
        QContextMenuEvent menu(QContextMenuEvent::Mouse, {9, 9}, empty->mapToGlobal({9, 9}));
        QApplication::sendEvent(empty, &menu);
        QVERIFY(m_f->table->findChild<QMenu*>("table_menu"));
        delete m_f->table->findChild<QMenu*>("table_menu");
        m_f->table->addNewReplacements("arial", "X");
        m_f->trigger("Add default replacements");
        QTRY_COMPARE(m_f->changes().size(), 8);
        QVERIFY(m_f->changes().contains("Microsoft YaHei=WenQuanYi Micro Hei"));
        m_f->trigger("Add default replacements");
        m_f->table->undo();
        QTRY_COMPARE(m_f->changes().size(), 15);
        QCOMPARE(m_f->shown(), QStringList{"arial=X"});
    }

    void fontIsChosen() {
        QVERIFY(m_f->open());
        m_f->choose({"宋体", "Arial"});
        m_f->trigger("To...");
        auto* dialog = m_f->page.findChild<QFontDialog*>();
        QVERIFY(dialog);
        // The rows stay chosen when they are read again.
        m_f->service.setJson("listFontReplacements", QJsonObject{{"Arial", "Other"}, {"宋体", "Serif"}});
        m_f->table->load();
        QTRY_COMPARE(m_f->shown(), QStringList({"宋体=Serif", "Arial=Other"}));
        m_f->table->clearSelection();
        dialog->setCurrentFont(QFont("DejaVu Serif"));
        dialog->accept();
        QTRY_COMPARE(m_f->changes(), QStringList({"宋体=DejaVu Serif", "Arial=DejaVu Serif"}));
    }

    void dialogAdds() {
        QVERIFY(m_f->open());
        m_f->page.findChild<QAbstractButton*>("fontreplacement_addbtn")->click();
        auto* dialog = m_f->page.findChild<FontReplaceDialog*>("fontreplacement_add_dialog");
        QSignalSpy closed(dialog, &FontReplaceDialog::closedlg);
        dialog->findChild<QComboBox*>("windows_font_combobox")->setEditText("T");
        dialog->findChild<QComboBox*>("linux_font_combobox")->setEditText("");
        QVERIFY(!dialog->findChild<QWidget*>("ok_btn")->isEnabled());
        dialog->findChild<QComboBox*>("linux_font_combobox")->setEditText("X");
        QCOMPARE(TestSupport::outOfReach(dialog), QString());
        dialog->findChild<QAbstractButton*>("ok_btn")->click();
        QCOMPARE(closed.count(), 1);
        QTRY_COMPARE(m_f->changes(), QStringList{"T=X"});
    }

    /// Whatever the user does, the calls make of the first list what the table shows in full rows.
    void callsGiveWhatIsShown() {
        QVERIFY(m_f->open());
        QRandomGenerator random(11);
        const QStringList names{"", "Arial", "arial", "宋体", "Tahoma", "SimSun"},
            families{"", "A", "B", "C"};
        const auto name = [&] { return names[random.bounded(names.size())]; };
        const auto family = [&] { return families[random.bounded(families.size())]; };
        const std::function<void(int)> actions[] = {
            [&](int) { m_f->table->addNewReplacements(name() + 'x', family()); },
            [&](int) { m_f->table->undo(); },
            [&](int) { m_f->trigger("Add default replacements"); },
            [&](int row) { m_f->remove(row); },
            [&](int row) { m_f->edit(row, 0, name()); },
            [&](int row) { m_f->edit(row, 1, family()); }};
        m_f->play(&random, actions);
        m_f->table->addNewReplacements("last", "A");
        QTRY_COMPARE(m_f->changes().last(), QString("last=A"));
        TableRows shown;
        for (const QString& line : m_f->shown()) {
            if (!line.startsWith('=') && !line.endsWith('='))
                shown[line.section('=', 0, 0)] = line.section('=', 1);
        }
        QCOMPARE(shown, m_f->replayed(m_list));
    }
};

int main(int argc, char** argv) {
    return runTableTest<FontReplacementsTest>(argc, argv);
}
#include "FontReplacementsTest.moc"
