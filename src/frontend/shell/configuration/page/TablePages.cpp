#include "shell/configuration/page/TablePages.h"

#include "shell/configuration/dlls/DllOverridePage.h"
#include "shell/configuration/fonts/FontReplacementPage.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/UndoBar.h"
#include "shell/configuration/tables/BottleTable.h"

TablePages::TablePages(BottleSettings* settings, QObject* parent)
    : QObject(parent), m_fonts(new FontReplacementPage), m_dlls(new DllOverridePage) {
    for (BottleTable* table : tables())
        table->setBottle(settings->bottle());
    connect(m_dlls->table(), &BottleTable::loaded, this, &TablePages::finish);
    settings->setReadBefore([this](const std::function<void()>& then) { read(then); });
}

QList<BottleTable*> TablePages::tables() const {
    return {m_fonts->table(), m_dlls->table()};
}

void TablePages::read(const std::function<void()>& then) {
    m_then = then;
    m_fonts->table()->load();
    if (!m_dlls->table()->load())
        finish();
}

void TablePages::finish() {
    if (const auto then = std::exchange(m_then, nullptr))
        then();
}

void TablePages::offerUndo(UndoBar* bar) {
    for (BottleTable* table : tables()) {
        connect(table, &BottleTable::undoable, bar,
                [bar, table] { bar->offer(table->accessibleName(), table, [table] { table->undo(); }); });
        connect(table, &BottleTable::replaced, bar, [bar, table] { bar->withdraw(table); });
    }
}
