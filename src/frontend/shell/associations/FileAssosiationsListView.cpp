#include "shell/associations/FileAssosiationsListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include "fenk/style/Tokens.h"
#include "programs/ProgramIcons.h"
#include "shell/associations/AssociationModel.h"
#include "shell/associations/FileAssosiationsItemDelegate.h"

using namespace Fenk;

namespace {
constexpr int NarrowColumn = 72;
constexpr int ExtensionColumn = 136;
}  // namespace

FileAssosiationsListView::FileAssosiationsListView(QWidget* parent) : QTreeView(parent) {
    setObjectName("file_associations");
    setAccessibleName(tr("File associations"));
    setItemDelegate(new FileAssosiationsItemDelegate(this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(Tokens::RowHeight);
    connect(this, &QAbstractItemView::clicked, this, &FileAssosiationsListView::toggle);
    connect(ProgramIcons::instance(), &ProgramIcons::ready, viewport(), qOverload<>(&QWidget::update));
}

void FileAssosiationsListView::setModel(QAbstractItemModel* model) {
    QTreeView::setModel(model);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->resizeSection(AssociationModel::Select, NarrowColumn);
    header()->resizeSection(AssociationModel::Icon, NarrowColumn);
    header()->resizeSection(AssociationModel::Extension, ExtensionColumn);
}

void FileAssosiationsListView::toggle(const QModelIndex& index) {
    const QModelIndex box = index.siblingAtColumn(AssociationModel::Select);
    const bool isOn = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    model()->setData(box, isOn ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

void FileAssosiationsListView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space || !currentIndex().isValid())
        QTreeView::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        toggle(currentIndex());
}
