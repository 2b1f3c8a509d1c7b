#include "shell/configuration/tables/EditableTable.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStandardItemModel>

#include "fenk/style/Tokens.h"
#include "fenk/window/StandardMenu.h"

using namespace Fenk;

EditableTable::EditableTable(const QString& firstTitle, const QString& secondTitle, QWidget* parent)
    : QTableView(parent), m_rows(new QStandardItemModel(0, 2, this)) {
    m_rows->setHorizontalHeaderLabels({firstTitle, secondTitle});
    setModel(m_rows);
    setFrameShape(QFrame::NoFrame);
    setSelectionBehavior(SelectRows);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(Tokens::RowHeight);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(Tokens::RowHeight);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    const auto count = [this] {
        if (!m_isFilling)
            Q_EMIT countChanged();
    };
    connect(m_rows, &QAbstractItemModel::rowsInserted, this, count);
    connect(m_rows, &QAbstractItemModel::rowsRemoved, this, count);
}

void EditableTable::setFilling(bool filling) {
    m_isFilling = filling;
    if (!filling)
        Q_EMIT countChanged();
}

QList<int> EditableTable::selectedRows() const {
    QList<int> numbers;
    for (const QModelIndex& index : selectionModel()->selectedRows()) {
        if (!isRowHidden(index.row()))  // Qt selects those that a search hides, too
            numbers << index.row();
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void EditableTable::editRow(int row) {
    const QModelIndex index = m_rows->index(row, 0);
    setCurrentIndex(index);
    scrollTo(index);
    edit(index);
}

void EditableTable::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex at = byKey ? currentIndex() : indexAt(event->pos());
    if (at.isValid() && !selectionModel()->isRowSelected(at.row(), {}))
        setCurrentIndex(at);
    const QPoint below = at.isValid() ? visualRect(at).bottomLeft() : QPoint();
    openMenu(byKey ? viewport()->mapToGlobal(below) : event->globalPos(), byKey);
}

void EditableTable::openMenu(const QPoint& globalPos, bool byKey) {
    auto* menu = new QMenu(this);
    menu->setObjectName("table_menu");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addMenuEntries(menu);
    if (menu->isEmpty()) {
        delete menu;
        return;
    }
    menu->popup(globalPos);
    if (byKey)
        chooseFirstEntry(menu);
}

bool EditableTable::viewportEvent(QEvent* event) {
    const bool isMove = event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter;
    if (isMove || event->type() == QEvent::HoverLeave) {
        const int row = isMove ? rowAt(static_cast<QHoverEvent*>(event)->pos().y()) : -1;
        if (std::exchange(m_hoveredRow, row) != row)
            viewport()->update();
    }
    return QTableView::viewportEvent(event);
}

void EditableTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && !selectedRows().isEmpty())
        deleteSelected();
    else if (event->key() == Qt::Key_Insert && event->modifiers() == Qt::NoModifier)
        addRow();
    else
        QTableView::keyPressEvent(event);
}
