#include "shell/configuration/offline/OfflineComponentsListView.h"

#include "shell/configuration/offline/OfflineComponentsHeaderView.h"
#include "shell/configuration/offline/OfflineComponentsItemDelegate.h"
#include "shell/configuration/offline/OfflineComponentsModel.h"

namespace {
constexpr int SelectColumn = 112;
}

OfflineComponentsListView::OfflineComponentsListView(OfflineComponentsModel* model, QWidget* parent)
    : TickListView(OfflineComponentsModel::Select, parent), m_head(new OfflineComponentsHeaderView) {
    setObjectName("offline_components");
    setAccessibleName(tr("Offline Components"));
    setItemDelegate(new OfflineComponentsItemDelegate(this));
    setHeader(m_head);
    setModel(model);
    m_head->resizeSection(OfflineComponentsModel::Select, SelectColumn);
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
