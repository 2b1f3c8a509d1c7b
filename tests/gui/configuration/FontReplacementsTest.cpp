#include <QAbstractButton>
#include <QFontDialog>
#include <QRandomGenerator>

#include "TableFixture.h"
#include "shell/configuration/fonts/FontNames.h"
#include "shell/configuration/fonts/FontReplaceDialog.h"
#include "shell/configuration/fonts/FontReplacementListView.h"
#include "shell/configuration/fonts/FontReplacementPage.h"

using TestSupport::Table;
using Fixture = TableFixture<FontReplacementPage, FontReplacementListView>;
using Action = std::function<void(Fixture&)>;
Q_DECLARE_METATYPE(Action)

/// Every edit is what the service is told, and the table shows what it has.
class FontReplacementsTest : public QObject {
    Q_OBJECT

    const QJsonObject m_list{{"Arial", "Noto Sans"}, {"宋体", "Noto Serif"}};
    std::unique_ptr<Fixture> m_fixture;

    QStringList changes() const {
        return m_fixture->changes({"addFontReplacements", "removeFontReplacement"});
    }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<Fixture>("listFontReplacements", m_list); }
    void cleanup() { m_fixture.reset(); }

    void names() {
        const QStringList windows = FontNames::ofWindows();
        QCOMPARE(windows.mid(0, 4), QStringList({"微软雅黑", "微软雅黑 Bold", "Arial", "Arial Black"}));
        QCOMPARE(QSet<QString>(windows.begin(), windows.end()).size(), windows.size());
    }

    void edits_data() {
        const Table<Action, QStringList, QStringList> row("action", "sent", "shown");
        const QString arial = "Arial=Noto Sans", song = "宋体=Noto Serif";
        row("load", [](Fixture&) {}, {}, {song, arial});
        row("replacement", [](Fixture& f) { f.edit(1, 1, "X"); }, {"addFontReplacements|Arial|X"},
            {song, "Arial=X"});
        row("half a row", [](Fixture& f) { f.table->addNewReplacements("Tahoma"); }, {},
            {"Tahoma=", song, arial});
        row("filled",
            [](Fixture& f) {
                f.table->addNewReplacements("Tahoma");
                f.edit(0, 1, "X");
            },
            {"addFontReplacements|Tahoma|X"}, {"Tahoma=X", song, arial});
        row("empty row",
            [](Fixture& f) {
                f.table->addNewReplacements();
                f.type("Tahoma");
                f.edit(0, 1, "X");
            },
            {"addFontReplacements|Tahoma|X"}, {"Tahoma=X", song, arial});
        row("same font again", [](Fixture& f) { f.table->addNewReplacements("Arial", "X"); },
            {"addFontReplacements|Arial|X"}, {"Arial=X", song});
        row("other font", [](Fixture& f) { f.edit(1, 0, "Tahoma"); },
            {"addFontReplacements|Tahoma|Noto Sans"}, {song, "Tahoma=Noto Sans", arial});
        row("cleared", [](Fixture& f) { f.edit(1, 1, ""); }, {}, {song, arial});
        row("delete",
            [](Fixture& f) {
                f.choose({"宋体", "Arial"});
                f.trigger("Delete selected");
            },
            {"removeFontReplacement|Arial", "removeFontReplacement|宋体"}, {});
        row("delete what was never sent",
            [](Fixture& f) {
                f.table->addNewReplacements("Tahoma");
                f.choose({"Tahoma"});
                QTest::keyClick(f.table, Qt::Key_Delete);
            },
            {"removeFontReplacement|Tahoma"}, {song, arial});
        row("undo",
            [](Fixture& f) {
                f.choose({"宋体"});
                QTest::keyClick(f.table, Qt::Key_Delete);
                f.table->undo();
            },
            {"removeFontReplacement|宋体", "addFontReplacements|宋体|Noto Serif"}, {song, arial});
    }
    void edits() {
        QFETCH(Action, action);
        QFETCH(QStringList, sent);
        const TestSupport::LogCapture log;
        QVERIFY(m_fixture->open());
        QCOMPARE(log.count("load font replacement: "), 2);
        action(*m_fixture);
        QTEST(m_fixture->shown(), "shown");
        QTRY_COMPARE(changes().size(), sent.size());
        QCOMPARE(changes(), sent);
    }

    void defaults() {
        QVERIFY(m_fixture->open());
        m_fixture->trigger("Add default replacements");
        QTRY_COMPARE(changes().size(), 6);
        QVERIFY(changes().contains("addFontReplacements|Microsoft YaHei|WenQuanYi Micro Hei"));
        m_fixture->trigger("Add default replacements");
        m_fixture->table->undo();
        QTRY_COMPARE(changes().size(), 12);
        QCOMPARE(m_fixture->shown().size(), 2);
    }

    void fontIsChosen() {
        QVERIFY(m_fixture->open());
        m_fixture->choose({"宋体", "Arial"});
        m_fixture->trigger("To...");
        auto* dialog = m_fixture->page.findChild<QFontDialog*>();
        QVERIFY(dialog);
        dialog->setCurrentFont(QFont("DejaVu Serif"));
        dialog->accept();
        QTRY_COMPARE(changes(), QStringList({"addFontReplacements|宋体|DejaVu Serif",
                                             "addFontReplacements|Arial|DejaVu Serif"}));
    }

    void dialogAdds() {
        QVERIFY(m_fixture->open());
        m_fixture->page.findChild<QAbstractButton*>("fontreplacement_addbtn")->click();
        auto* dialog = m_fixture->page.findChild<FontReplaceDialog*>("fontreplacement_add_dialog");
        QSignalSpy closed(dialog, &FontReplaceDialog::closedlg);
        auto* ok = dialog->findChild<QAbstractButton*>("ok_btn");
        dialog->findChild<QComboBox*>("windows_font_combobox")->setEditText("Tahoma");
        dialog->findChild<QComboBox*>("linux_font_combobox")->setEditText("");
        QVERIFY(!ok->isEnabled());
        dialog->findChild<QComboBox*>("linux_font_combobox")->setEditText("DejaVu Sans");
        QCOMPARE(TestSupport::outOfReach(dialog), QString());
        ok->click();
        QCOMPARE(closed.count(), 1);
        QTRY_COMPARE(changes(), QStringList{"addFontReplacements|Tahoma|DejaVu Sans"});
        QCOMPARE(m_fixture->shown().first(), QString("Tahoma=DejaVu Sans"));
    }

    void idleRemovalIsNoFailure() {
        m_fixture->service.setError("removeFontReplacement", "no such font");
        QVERIFY(m_fixture->open());
        QSignalSpy refused(m_fixture->table, &BottleTable::refused);
        m_fixture->table->addNewReplacements("Tahoma");
        m_fixture->choose({"Tahoma"});
        QTest::keyClick(m_fixture->table, Qt::Key_Delete);
        m_fixture->choose({"Arial"});
        QTest::keyClick(m_fixture->table, Qt::Key_Delete);
        QTRY_COMPARE(m_fixture->shown().size(), 2);
        QCOMPARE(refused.count(), 1);
    }

    void listCannotBeRead() {
        m_fixture->service.setError("listFontReplacements", "no bottle");
        const TestSupport::LogCapture log;
        QVERIFY(m_fixture->open());
        QVERIFY(log.contains(QtWarningMsg, "listFontReplacements error: no bottle"));
        // The menu that fills an empty list is there.
        m_fixture->trigger("Add default replacements");
        QTRY_COMPARE(changes().size(), 8);
    }

    /// Whatever the user does, the calls make of the first list what the table shows as sent.
    void callsGiveWhatIsShown() {
        QVERIFY(m_fixture->open());
        QRandomGenerator random(11);
        const QStringList names{"", "Arial", "arial", "宋体", "Tahoma", "Segoe UI"};
        const QStringList families{"", "A", "B", "C"};
        const auto one = [&](const QStringList& list) { return list[random.bounded(list.size())]; };
        for (int i = 0; i < 300; ++i) {
            const int count = m_fixture->table->rows()->rowCount();
            switch (random.bounded(6)) {
                case 0:
                    m_fixture->table->addNewReplacements(one(names) + 'x', one(families));
                    break;
                case 1:
                    m_fixture->table->undo();
                    break;
                case 2:
                    m_fixture->trigger("Add default replacements");
                    break;
                case 3:
                case 4:
                    m_fixture->choose({one(names), one(names) + 'x', one(FontNames::replacedByDefault())});
                    QTest::keyClick(m_fixture->table, Qt::Key_Delete);
                    break;
                default:
                    if (count > 0 && random.bounded(2))
                        m_fixture->edit(random.bounded(count), 0, one(names));
                    else if (count > 0)
                        m_fixture->edit(random.bounded(count), 1, one(families));
            }
        }
        m_fixture->table->addNewReplacements("last", "A");
        QTRY_COMPARE(changes().last(), QString("addFontReplacements|last|A"));
        TableRows model = TableDifference::rowsOf(m_list);
        for (const QString& call : changes()) {
            const QStringList words = call.split('|');
            if (words[0] == "removeFontReplacement")
                model.remove(words[1]);
            else
                model[words[1]] = words[2];
        }
        TableRows shown;
        for (int row = 0; row < m_fixture->table->rows()->rowCount(); ++row) {
            if (!m_fixture->cell(row, 0).isEmpty() && !m_fixture->cell(row, 1).isEmpty())
                shown.insert(m_fixture->cell(row, 0), m_fixture->cell(row, 1));
        }
        QCOMPARE(shown, model);
    }
};

int main(int argc, char** argv) {
    return runTableTest<FontReplacementsTest>(argc, argv);
}
#include "FontReplacementsTest.moc"
