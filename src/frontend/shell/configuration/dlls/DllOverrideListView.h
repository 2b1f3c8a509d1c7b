#pragma once

#include "shell/configuration/tables/BottleTable.h"

/// The DLL overrides of a bottle: name and load method.
class DllOverrideListView : public BottleTable {
    Q_OBJECT
public:
    /// Of the second column: the index of the load method.
    static constexpr int MethodRole = Qt::UserRole + 1;

    explicit DllOverrideListView(QWidget* parent = nullptr);

    /// What a scan has found, in one step; names in lower case. Rows that are there get the method.
    void merge(const QStringList& names, int method);
    /// The row whose name Wine takes for the same, whatever its case; -1 when there is none.
    int rowOf(const QString& name, int except = -1) const;

    TableRows sentRows() const override;

public Q_SLOTS:
    void onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles);
    void onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    /// Adds a row at the top and edits its name. It goes again when it gets none.
    void addNewOverride();

protected:
    void fill(const TableRows& rows) override;
    void send(const TableChange& change) override;
    void addMenuEntries(QMenu* menu) override;
    void deleteSelected() override;
    void addRow() override { addNewOverride(); }
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    QString nameOf(int row) const;
    /// Why the row cannot have its name, for the user; empty when it can.
    QString faultOf(int row) const;
    int methodOf(int row) const;
    /// Sends what the row has now and the service has not.
    void sendRow(int row);
    void setSent(int row, const QString& value);
    void insert(int row, const QString& name, int method);
    void setMethod(int method);
    void set(const QString& name, int method);
    void remove(const QString& name);
};
