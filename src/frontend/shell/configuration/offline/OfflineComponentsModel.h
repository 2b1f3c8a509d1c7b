#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>
#include <QVector>

#include "shell/configuration/offline/OfflineComponentState.h"

/// The table of components to export or import. While the user chooses, rows have a check box; a component
/// that a ticked one needs is ticked too, and can't be unticked meanwhile. During the work the rows show its
/// states.
class OfflineComponentsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Select, Name, ColumnCount };
    enum Role { StatusRole = Qt::UserRole + 1, StatusKindRole };

    using QAbstractTableModel::QAbstractTableModel;

    /// Replaces the rows; without doubles. Ticked ones emit ticked().
    void setComponents(const QStringList& names, bool areChecked);
    /// What a component needs, also indirectly; ticks it if the component is ticked, and while the
    /// user chooses.
    void setNeeded(const QString& name, const QStringList& needed);
    void setAllChecked(bool checked);
    /// False: no row can be ticked or unticked.
    void setChoosing(bool choosing);
    /// Nothing happens for a name without row.
    void setState(const QString& name, const OfflineComponentState& state);
    void failRunning(const QString& reason);

    QStringList checkedNames() const;
    bool isAnyRunning() const;
    bool isAnyDone() const;
    /// Why components have failed, each reason once.
    QStringList reasons() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    void checkedCountChanged(int count);
    /// A row was ticked; setNeeded() is expected.
    void ticked(const QString& name);

private:
    struct Row {
        QString name;
        bool checked = false;
        OfflineComponentState state;
    };

    QVariant dataOfName(const Row& row, int role) const;
    /// The ticked components that need this one.
    QStringList neededBy(const QString& name) const;
    QString statusOf(const Row& row) const;
    int rowOf(const QString& name) const;
    /// Returns whether that has changed something.
    bool check(int row, bool checked);
    void announce();

    QVector<Row> m_rows;
    QHash<QString, QStringList> m_needed;
    bool m_isChoosing = true;
};
