#include "shell/configuration/offline/OfflineComponentsModel.h"

#include <algorithm>

#include "fenk/controls/Label.h"

void OfflineComponentsModel::setComponents(const QStringList& names, bool areChecked) {
    beginResetModel();
    m_rows.clear();
    m_needed.clear();
    for (const QString& name : names) {
        if (rowOf(name) < 0)
            m_rows.append({name, areChecked, {}});
    }
    endResetModel();
    Q_EMIT checkedCountChanged(checkedNames().size());
    for (const QString& name : checkedNames())
        Q_EMIT ticked(name);
}

void OfflineComponentsModel::setNeeded(const QString& name, const QStringList& needed) {
    m_needed.insert(name, needed);
    const int row = rowOf(name);
    if (row < 0 || !m_rows[row].checked || !m_isChoosing)
        return;
    QStringList added;
    for (const QString& other : needed) {
        if (check(rowOf(other), true))
            added += other;
    }
    announce();
    for (const QString& other : qAsConst(added))
        Q_EMIT ticked(other);
}

void OfflineComponentsModel::setAllChecked(bool checked) {
    QStringList added;
    for (int row = 0; row < m_rows.size() && m_isChoosing; ++row) {
        if (check(row, checked) && checked)
            added += m_rows[row].name;
    }
    announce();
    for (const QString& name : qAsConst(added))
        Q_EMIT ticked(name);
}

void OfflineComponentsModel::setChoosing(bool choosing) {
    m_isChoosing = choosing;
    if (choosing) {
        for (Row& row : m_rows)
            row.state = {};
    }
    announce();
}

void OfflineComponentsModel::setState(const QString& name, const OfflineComponentState& state) {
    const int row = rowOf(name);
    if (row < 0)
        return;
    m_rows[row].state = state;
    Q_EMIT dataChanged(index(row, Select), index(row, Name));
}

void OfflineComponentsModel::failRunning(const QString& reason) {
    for (Row& row : m_rows) {
        if (row.state.kind == OfflineComponentState::Running)
            row.state = OfflineComponentState::failed(reason);
    }
    announce();
}

QStringList OfflineComponentsModel::checkedNames() const {
    QStringList names;
    for (const Row& row : m_rows) {
        if (row.checked)
            names += row.name;
    }
    return names;
}

bool OfflineComponentsModel::isAnyRunning() const {
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [](const Row& row) { return row.state.kind == OfflineComponentState::Running; });
}

bool OfflineComponentsModel::isAnyDone() const {
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [](const Row& row) { return row.state.kind == OfflineComponentState::Done; });
}

QStringList OfflineComponentsModel::reasons() const {
    QStringList reasons;
    for (const Row& row : m_rows) {
        if (!row.state.reason.isEmpty() && !reasons.contains(row.state.reason))
            reasons += row.state.reason;
    }
    return reasons;
}

int OfflineComponentsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows.size();
}

int OfflineComponentsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant OfflineComponentsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& row = m_rows.at(index.row());
    if (role == StatusRole)
        return statusOf(row);
    if (role == StatusKindRole)
        return row.state.kind;
    if (index.column() == Name)
        return dataOfName(row, role);
    if (role == Qt::CheckStateRole)
        return row.checked ? Qt::Checked : Qt::Unchecked;
    return role == Qt::AccessibleTextRole ? tr("Select %1").arg(row.name) : QVariant();
}

QVariant OfflineComponentsModel::dataOfName(const Row& row, int role) const {
    const QString status = statusOf(row);
    switch (role) {
        case Qt::DisplayRole:
            return row.name;
        case Qt::AccessibleTextRole:
            return status.isEmpty() ? row.name : tr("%1: %2").arg(row.name, status);
        case Qt::AccessibleDescriptionRole:
            return row.state.reason;
        case Qt::ToolTipRole: {
            // The row may be too narrow for both.
            const QString detail = row.state.reason.isEmpty() ? status : row.state.reason;
            return Fenk::plainToolTip(detail.isEmpty() ? row.name : row.name + '\n' + detail);
        }
        default:
            return {};
    }
}

bool OfflineComponentsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    const bool checked = value.toInt() == Qt::Checked;
    if (!check(index.row(), checked))
        return false;
    announce();
    if (checked)
        Q_EMIT ticked(m_rows[index.row()].name);
    return true;
}

QVariant OfflineComponentsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return section == Select ? tr("Select") : tr("Components Name");
}

Qt::ItemFlags OfflineComponentsModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags base = QAbstractTableModel::flags(index);
    if (!index.isValid() || index.column() != Select || !m_isChoosing)
        return base;
    const Row& row = m_rows.at(index.row());
    return row.checked && !neededBy(row.name).isEmpty() ? base : base | Qt::ItemIsUserCheckable;
}

QStringList OfflineComponentsModel::neededBy(const QString& name) const {
    QStringList names;
    for (const Row& row : m_rows) {
        if (row.checked && row.name != name && m_needed.value(row.name).contains(name))
            names += row.name;
    }
    return names;
}

QString OfflineComponentsModel::statusOf(const Row& row) const {
    if (row.state.kind != OfflineComponentState::Idle || !m_isChoosing || !row.checked)
        return row.state.text;
    const QStringList needing = neededBy(row.name);
    return needing.isEmpty() ? QString() : tr("Component is needed by %1").arg(needing.join(", "));
}

int OfflineComponentsModel::rowOf(const QString& name) const {
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].name == name)
            return row;
    }
    return -1;
}

bool OfflineComponentsModel::check(int row, bool checked) {
    return row >= 0 && std::exchange(m_rows[row].checked, checked) != checked;
}

/// A tick may change what other rows say and allow.
void OfflineComponentsModel::announce() {
    if (m_rows.isEmpty())
        return;
    Q_EMIT dataChanged(index(0, Select), index(m_rows.size() - 1, Name));
    Q_EMIT checkedCountChanged(checkedNames().size());
}
