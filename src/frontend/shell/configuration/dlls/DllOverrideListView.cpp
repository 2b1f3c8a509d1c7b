#include "shell/configuration/dlls/DllOverrideListView.h"

#include <QDebug>
#include <QMenu>
#include <QStandardItemModel>

#include "backend/BottlesConfig.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/dlls/DllNames.h"
#include "shell/configuration/dlls/DllOverrideItemDelegate.h"
#include "shell/configuration/dlls/LoadMethods.h"

namespace {

/// Of the first column: the name that the service has, empty for a new row. Of the second: its method in the
/// service's words.
constexpr int SentRole = Qt::UserRole + 2;

/// A load method, shown as text.
class MethodItem : public QStandardItem {
public:
    explicit MethodItem(int method) { setData(method, DllOverrideListView::MethodRole); }
    QVariant data(int role) const override {
        return role == Qt::DisplayRole ? LoadMethods::text(data(DllOverrideListView::MethodRole).toInt())
                                       : QStandardItem::data(role);
    }
};

}  // namespace

DllOverrideListView::DllOverrideListView(QWidget* parent)
    : BottleTable("listDllOverrides", tr("dll name"), tr("Load method"), parent) {
    setObjectName("dlloverride_listview");
    setAccessibleName(tr("DLL Override"));
    setItemDelegate(new DllOverrideItemDelegate(this));
    sync()->setList([this](QObject* context, const TableSync::Handler& handler) {
        BottlesConfig::instance()->listDllOverrides(bottle(), context, handler);
    });
    connect(rows(), &QAbstractItemModel::dataChanged, this,
            qOverload<const QModelIndex&, const QModelIndex&, const QVector<int>&>(
                &DllOverrideListView::onDataChanged));
}

QString DllOverrideListView::nameOf(int row) const {
    return rows()->item(row, 0)->text();
}

QString DllOverrideListView::faultOf(int row) const {
    const QString name = nameOf(row);
    if (name.isEmpty())
        return {};
    if (!DllNames::isGood(name))
        return tr("%1 is no name of a DLL or program.").arg(name);
    return rowOf(name, row) < 0 ? QString() : tr("There is an override of %1 already.").arg(name);
}

int DllOverrideListView::methodOf(int row) const {
    return rows()->item(row, 1)->data(MethodRole).toInt();
}

int DllOverrideListView::rowOf(const QString& name, int except) const {
    for (int row = 0; row < rows()->rowCount(); ++row) {
        if (row != except && DllNames::isSame(nameOf(row), name))
            return row;
    }
    return -1;
}

TableRows DllOverrideListView::sentRows() const {
    TableRows sent;
    for (int row = 0; row < rows()->rowCount(); ++row) {
        const QString name = rows()->item(row, 0)->data(SentRole).toString();
        if (!name.isEmpty())
            sent.insert(name, rows()->item(row, 1)->data(SentRole).toString());
    }
    return sent;
}

void DllOverrideListView::insert(int row, const QString& name, int method) {
    rows()->insertRow(row, {new QStandardItem(name), new MethodItem(method)});
}

void DllOverrideListView::setSent(int row, const QString& value) {
    rows()->item(row, 0)->setData(nameOf(row), SentRole);
    rows()->item(row, 1)->setData(value, SentRole);
}

void DllOverrideListView::fill(const TableRows& list) {
    clear();
    for (auto it = list.begin(); it != list.end(); ++it) {
        insert(rows()->rowCount(), it.key(), LoadMethods::ofWireValue(it.value()));
        setSent(rows()->rowCount() - 1, it.value());
    }
}

void DllOverrideListView::addNewOverride() {
    insert(0, {}, LoadMethods::NativeThenBuiltin);
    editRow(0);
}

void DllOverrideListView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const QPersistentModelIndex edited = indexAt(editor->geometry().center());
    BottleTable::closeEditor(editor, hint);
    if (edited.isValid() && nameOf(edited.row()).isEmpty())
        rows()->removeRow(edited.row());
}

void DllOverrideListView::onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                                        const QVector<int>& roles) {
    if (roles != QVector<int>{SentRole})
        onDataChanged(topLeft, bottomRight);
}

void DllOverrideListView::onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight) {
    if (isFilling())
        return;
    step([&] {
        for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
            sendRow(row);
    });
}

void DllOverrideListView::sendRow(int row) {
    QStandardItem* nameItem = rows()->item(row, 0);
    const QString sentName = nameItem->data(SentRole).toString();
    const QString sentValue = rows()->item(row, 1)->data(SentRole).toString();
    const int method = methodOf(row);
    const QString name = nameOf(row);
    if (!sentName.isEmpty() && method != LoadMethods::ofWireValue(sentValue)) {
        qInfo() << sentValue << "-->" << LoadMethods::wireValue(method);
        set(sentName, method);
        rows()->item(row, 1)->setData(LoadMethods::wireValue(method), SentRole);
    }
    if (name == sentName)
        return;
    qInfo() << "dll name changed" << sentName << "-->" << name;
    const QString fault = faultOf(row);
    if (name.isEmpty() || !fault.isEmpty()) {
        if (!fault.isEmpty())
            Q_EMIT refused(fault);
        setFilling(true);
        nameItem->setText(sentName);
        setFilling(false);
        return;
    }
    if (!sentName.isEmpty())
        remove(sentName);
    set(name, method);
    setSent(row, LoadMethods::wireValue(method));
}

void DllOverrideListView::set(const QString& name, int method) {
    change(name, "the override of",
           [this, name, method](QObject* context, const TableSync::Handler& handler) {
               BottlesConfig::instance()->updateDllOverride(bottle(), name, LoadMethods::wireValue(method),
                                                            context, handler);
           });
}

void DllOverrideListView::remove(const QString& name) {
    change(name, "the removal of the override of",
           [this, name](QObject* context, const TableSync::Handler& handler) {
               BottlesConfig::instance()->removeDllOverride(bottle(), name, context, handler);
           });
}

void DllOverrideListView::send(const TableChange& change) {
    if (change.isRemoved)
        remove(change.name);
    else
        set(change.name, LoadMethods::ofWireValue(change.value));
}

void DllOverrideListView::merge(const QStringList& names, int method) {
    QHash<QString, int> known;
    for (int row = 0; row < rows()->rowCount(); ++row)
        known.insert(nameOf(row).toLower(), row);
    int first = rows()->rowCount();
    step([&] {
        for (const QString& found : names) {
            const QString name = found.toLower();
            const int row = known.value(name, rows()->rowCount());
            first = qMin(first, row);
            if (row < rows()->rowCount()) {
                rows()->item(row, 1)->setData(method, MethodRole);
                continue;
            }
            insert(row, name, method);
            set(name, method);
            setSent(row, LoadMethods::wireValue(method));
            known.insert(name, row);
        }
    });
    scrollTo(rows()->index(first, 0));
}

void DllOverrideListView::addMenuEntries(QMenu* menu) {
    if (selectedRows().isEmpty())
        return;
    QMenu* methods = menu->addMenu(tr("Set to ..."));
    for (int method = 0; method < LoadMethods::Count; ++method)
        methods->addAction(LoadMethods::text(method), this, [this, method] { setMethod(method); });
    menu->addSeparator();
    Fenk::setDestructive(menu->addAction(tr("Delete selected"), this, &DllOverrideListView::deleteSelected));
}

void DllOverrideListView::setMethod(int method) {
    step([&] {
        for (const int row : selectedRows())
            rows()->item(row, 1)->setData(method, MethodRole);
    });
}

void DllOverrideListView::deleteSelected() {
    const QList<int> selected = selectedRows();
    step([&] {
        for (int i = selected.size() - 1; i >= 0; --i) {
            const QString name = rows()->item(selected[i], 0)->data(SentRole).toString();
            rows()->removeRow(selected[i]);
            if (!name.isEmpty())
                remove(name);
        }
    });
}
