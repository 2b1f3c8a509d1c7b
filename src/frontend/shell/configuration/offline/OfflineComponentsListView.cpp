#include "shell/configuration/offline/OfflineComponentsListView.h"

#include <QKeyEvent>
#include <QScrollBar>

#include "fenk/style/Tokens.h"
#include "shell/configuration/offline/OfflineComponentsHeaderView.h"
#include "shell/configuration/offline/OfflineComponentsItemDelegate.h"
#include "shell/configuration/offline/OfflineComponentsModel.h"

using namespace Fenk;

namespace {
constexpr int SelectColumn = 112;
}

OfflineComponentsListView::OfflineComponentsListView(OfflineComponentsModel* model, QWidget* parent)
    : QTreeView(parent), m_head(new OfflineComponentsHeaderView) {
    setObjectName("offline_components");
    setAccessibleName(tr("Offline Components"));
    setItemDelegate(new OfflineComponentsItemDelegate(this));
    setHeader(m_head);
    setModel(model);
    m_head->setStretchLastSection(true);
    m_head->setSectionsMovable(false);
    m_head->setSectionResizeMode(QHeaderView::Fixed);
    m_head->resizeSection(OfflineComponentsModel::Select, SelectColumn);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(Tokens::RowHeight);
    connect(this, &QAbstractItemView::clicked, this, &OfflineComponentsListView::toggle);
    connect(m_head, &OfflineComponentsHeaderView::headerCheckBoxClicked, model,
            [model](Qt::CheckState state) { model->setAllChecked(state == Qt::Checked); });
    connect(model, &OfflineComponentsModel::checkedCountChanged, this,
            &OfflineComponentsListView::onCheckedCountChanged);
}

void OfflineComponentsListView::onCheckedCountChanged(int count) {
    m_head->setCheckState(count == 0                     ? Qt::Unchecked
                          : count == model()->rowCount() ? Qt::Checked
                                                         : Qt::PartiallyChecked);
}

void OfflineComponentsListView::toggle(const QModelIndex& index) {
    const QModelIndex box = index.siblingAtColumn(OfflineComponentsModel::Select);
    const bool isOn = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    model()->setData(box, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void OfflineComponentsListView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space || !currentIndex().isValid())
        QTreeView::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        toggle(currentIndex());
}
