#pragma once

#include <QComboBox>
#include <QMenu>
#include <QPointer>
#include <QRandomGenerator>
#include <QStandardItemModel>
#include <QtTest>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "shell/configuration/tables/BottleTable.h"
#include "shell/configuration/tables/TablePage.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

/// A page with a table of the bottle "office" over a fake service, which has the list of `listMethod`.
template <class Page, class List>
class TableFixture {
public:
    explicit TableFixture(const QString& listMethod, const QJsonObject& list) {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        if (!service.start(true))
            return;
        service.setJson(listMethod, list);
        service.takeName();
        table = static_cast<List*>(page.table());
        table->setBottle("office");
    }

    bool open() {
        QSignalSpy loaded(table, &BottleTable::loaded);
        page.resize(640, 400);
        page.show();
        table->load();
        return QTest::qWaitForWindowActive(&page) && (loaded.count() || loaded.wait());
    }
    /// "name=value" by row, as shown.
    QStringList shown() const {
        QStringList lines;
        for (int row = 0; row < table->rows()->rowCount(); ++row)
            lines << table->rows()->index(row, 0).data().toString() + '=' +
                         table->rows()->index(row, 1).data().toString();
        return lines;
    }
    QComboBox* editor() const {
        for (auto* combo : table->template findChildren<QComboBox*>()) {
            if (combo->isVisible())
                return combo;
        }
        return nullptr;
    }
    /// By keys: F2, the text, and then the last key.
    void edit(int row, int column, const QString& text, Qt::Key last = Qt::Key_Return) {
        table->setCurrentIndex(table->rows()->index(row, column));
        QTest::keyClick(table, Qt::Key_F2);
        type(text, last);
    }
    void type(const QString& text, Qt::Key last = Qt::Key_Return) {
        QComboBox* combo = editor();
        QVERIFY(combo);
        combo->setEditText(text);
        QTest::keyClick(combo, last);
        QTRY_VERIFY(!editor());
    }
    static void turnWheel(QWidget* widget) {
        const QPointF at = widget->rect().center();
        QWheelEvent turn(at, widget->mapToGlobal(at.toPoint()), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &turn);
    }
    /// Adds a row by key and types its first cell.
    void add(const QString& text) {
        QTest::keyClick(table, Qt::Key_Insert);
        type(text);
    }
    void remove(const QStringList& names) {
        choose(names);
        QTest::keyClick(table, Qt::Key_Delete);
    }
    void remove(int row) {
        table->selectRow(row);
        QTest::keyClick(table, Qt::Key_Delete);
    }
    void choose(const QStringList& names) {
        table->clearSelection();
        for (int row = 0; row < table->rows()->rowCount(); ++row) {
            if (names.contains(table->rows()->item(row, 0)->text()))
                table->selectionModel()->select(table->rows()->index(row, 0),
                                                QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    /// Chooses an entry of the context menu, one of a submenu by "menu/entry".
    void trigger(const QString& path) {
        table->openMenu(page.mapToGlobal({50, 50}), false);
        auto* menu = table->template findChild<QMenu*>("table_menu");
        const QStringList words = path.split('/');
        for (int i = 0; i < words.size(); ++i) {
            for (QAction* action : menu->actions()) {
                if (action->text() != words[i])
                    continue;
                if (i == words.size() - 1)
                    action->trigger();
                else
                    menu = action->menu();
                break;
            }
        }
        delete table->template findChild<QMenu*>("table_menu");
    }
    /// Each change that the service was told, "name=value" or "-name" for a removal.
    QStringList changes() {
        QStringList lines;
        for (const TestSupport::RecordedCall& call : service.calls()) {
            const QVariantList words = call.arguments.toVariantList();
            const bool isDll = call.method == "updateDllOverride";
            if (call.method == "removeFontReplacement" || (isDll && words[3].toBool()))
                lines << '-' + words[1].toString() + words.value(2).toString();
            else if (isDll || call.method == "addFontReplacements")
                lines << words[1].toString() + '=' + words[2].toString();
        }
        return lines;
    }
    /// What the changes make of the list in Wine, which reads names without case.
    TableRows replayed(const QJsonObject& list) {
        TableRows rows = TableDifference::rowsOf(list);
        for (const QString& change : changes()) {
            const bool isRemoval = change.startsWith('-');
            const QString name = isRemoval ? change.mid(1) : change.section('=', 0, 0);
            for (const QString& other : rows.keys()) {
                if (other.compare(name, Qt::CaseInsensitive) == 0)
                    rows.remove(other);
            }
            if (!isRemoval)
                rows[name] = change.section('=', 1);
        }
        return rows;
    }

    /// Does 300 of the actions, which get the number of a row; the first three need none.
    void play(QRandomGenerator* random, const std::function<void(int)> (&actions)[6]) {
        for (int i = 0; i < 300; ++i) {
            const int count = table->rows()->rowCount();
            actions[random->bounded(count > 0 ? 6 : 3)](random->bounded(qMax(count, 1)));
        }
    }

    TestSupport::FakeBottleService service;
    Page page;
    List* table = nullptr;
};

template <class Test>
int runTableTest(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    const TestSupport::TestHome home;
    Fenk::Application app(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
