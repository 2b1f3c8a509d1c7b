#include "shell/configuration/dlls/DllOverrideItemDelegate.h"

#include <QComboBox>
#include <QDebug>
#include <QFile>

#include "shell/configuration/dlls/DllOverrideListView.h"
#include "shell/configuration/dlls/LoadMethods.h"
#include "shell/configuration/tables/CompletingCombo.h"

namespace {
constexpr int VisibleItems = 15;
}

// Q_INIT_RESOURCE declares a function of the global scope.
static void loadResources() {
    Q_INIT_RESOURCE(resources_dlls);
}

DllOverrideItemDelegate::DllOverrideItemDelegate(QObject* parent) : ComboCellDelegate(parent) {
    loadResources();
    m_dlls = builtinDlls();
}

QStringList DllOverrideItemDelegate::builtinDlls(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("Failed to open builtin_dlls.txt");
        return {};
    }
    QStringList names = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    names.removeDuplicates();
    return names;
}

void DllOverrideItemDelegate::prepare(QComboBox* combo, int column) const {
    if (column == 0) {
        combo->setAccessibleName("dllname_edit");
        makeCompleting(combo, m_dlls, VisibleItems, true);
        return;
    }
    combo->setAccessibleName("loadmethod_edit");
    for (int method = 0; method < LoadMethods::Count; ++method)
        combo->addItem(LoadMethods::text(method));
}

void DllOverrideItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    if (index.column() == 0)
        ComboCellDelegate::setEditorData(editor, index);
    else
        static_cast<QComboBox*>(editor)->setCurrentIndex(index.data(DllOverrideListView::MethodRole).toInt());
}

void DllOverrideItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                           const QModelIndex& index) const {
    if (index.column() == 0)
        ComboCellDelegate::setModelData(editor, model, index);
    else
        model->setData(index, static_cast<QComboBox*>(editor)->currentIndex(),
                       DllOverrideListView::MethodRole);
}
