#include "shell/associations/AssociationModel.h"

void AssociationModel::setRows(const QVector<BottleAssociations::Row>& rows) {
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

QStringList AssociationModel::checkedKeys() const {
    QStringList keys;
    for (const auto& row : m_rows) {
        if (row.chosen)
            keys << row.key;
    }
    return keys;
}

int AssociationModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows.size();
}

int AssociationModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant AssociationModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& row = m_rows.at(index.row());
    switch (index.column()) {
        case Select:
            if (role == Qt::CheckStateRole)
                return row.chosen ? Qt::Checked : Qt::Unchecked;
            return role == Qt::AccessibleTextRole ? tr("Export %1").arg(row.key) : QVariant();
        case Icon:
            return role == IconFileRole ? row.icon : QVariant();
        case Extension:
            return role == Qt::DisplayRole ? row.key : QVariant();
        default:
            return role == Qt::DisplayRole ? row.application : QVariant();
    }
}

bool AssociationModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    m_rows[index.row()].chosen = value.toInt() == Qt::Checked;
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

QVariant AssociationModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole && section <= Icon)
        return Qt::AlignCenter;
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
        case Select:
            return tr("Select");
        case Icon:
            return tr("Icon");
        case Extension:
            return tr("Extension");
        default:
            return tr("Application");
    }
}

Qt::ItemFlags AssociationModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags base = QAbstractTableModel::flags(index);
    return index.isValid() && index.column() == Select ? base | Qt::ItemIsUserCheckable : base;
}
