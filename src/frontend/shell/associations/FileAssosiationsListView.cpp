#include "shell/associations/FileAssosiationsListView.h"

#include <QHeaderView>

#include "programs/ProgramIcons.h"
#include "shell/associations/AssociationModel.h"
#include "shell/associations/FileAssosiationsItemDelegate.h"

namespace {
constexpr int NarrowColumn = 72;
constexpr int ExtensionColumn = 136;
}  // namespace

FileAssosiationsListView::FileAssosiationsListView(QWidget* parent)
    : TickListView(AssociationModel::Select, parent) {
    setObjectName("file_associations");
    setAccessibleName(tr("File associations"));
    setItemDelegate(new FileAssosiationsItemDelegate(this));
    connect(ProgramIcons::instance(), &ProgramIcons::ready, viewport(), qOverload<>(&QWidget::update));
}

void FileAssosiationsListView::setModel(QAbstractItemModel* model) {
    TickListView::setModel(model);
    header()->resizeSection(AssociationModel::Select, NarrowColumn);
    header()->resizeSection(AssociationModel::Icon, NarrowColumn);
    header()->resizeSection(AssociationModel::Extension, ExtensionColumn);
}
