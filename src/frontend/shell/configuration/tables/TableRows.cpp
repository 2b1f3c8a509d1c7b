#include "shell/configuration/tables/TableRows.h"

TableRows TableDifference::rowsOf(const QJsonObject& list) {
    TableRows rows;
    for (auto it = list.begin(); it != list.end(); ++it)
        rows.insert(it.key(), it.value().toString());
    return rows;
}

QVector<TableChange> TableDifference::between(const TableRows& from, const TableRows& to) {
    QVector<TableChange> changes;
    for (auto it = from.begin(); it != from.end(); ++it) {
        if (!to.contains(it.key()))
            changes.append({it.key(), QString(), true});
    }
    for (auto it = to.begin(); it != to.end(); ++it) {
        const auto old = from.find(it.key());
        if (old == from.end() || *old != *it)
            changes.append({it.key(), it.value(), false});
    }
    return changes;
}

QVector<TableChange> TableDifference::needed(const TableRows& rows, const QVector<TableChange>& changes) {
    QVector<TableChange> needed;
    for (const TableChange& change : changes) {
        const auto row = rows.find(change.name);
        const bool isThere = row != rows.end();
        if (change.isRemoved ? isThere : !isThere || *row != change.value)
            needed.append(change);
    }
    return needed;
}

void TableDifference::apply(const TableChange& change, TableRows* rows) {
    if (change.isRemoved)
        rows->remove(change.name);
    else
        rows->insert(change.name, change.value);
}
