#include "widgets/TickListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include "fenk/style/Tokens.h"

TickListView::TickListView(int column, QWidget* parent) : QTreeView(parent), m_column(column) {
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(Fenk::Tokens::RowHeight);
    connect(this, &QAbstractItemView::clicked, this, &TickListView::toggle);
}

void TickListView::setModel(QAbstractItemModel* model) {
    QTreeView::setModel(model);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::Fixed);
}

void TickListView::toggle(const QModelIndex& index) {
    const QModelIndex box = index.siblingAtColumn(m_column);
    const bool isOn = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    model()->setData(box, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void TickListView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space || !currentIndex().isValid())
        QTreeView::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        toggle(currentIndex());
}
