#pragma once

#include <QAbstractTableModel>

#include "shell/associations/BottleAssociations.h"

/// The table of a bottle's associations, with a check box in each row.
class AssociationModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Select, Icon, Extension, Application };
    static constexpr int ColumnCount = Application + 1;
    static constexpr int IconFileRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void setRows(const QVector<BottleAssociations::Row>& rows);
    QStringList checkedKeys() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QVector<BottleAssociations::Row> m_rows;
};
