#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

/// The rows of a table as the service has them: name to value.
using TableRows = QMap<QString, QString>;

struct TableChange {
    QString name;
    QString value;
    bool isRemoved = false;
};

namespace TableDifference {

TableRows rowsOf(const QJsonObject& list);
/// The changes that make one table into the other, removals first.
QVector<TableChange> between(const TableRows& from, const TableRows& to);
/// Those of the changes that change the rows.
QVector<TableChange> needed(const TableRows& rows, const QVector<TableChange>& changes);
void apply(const TableChange& change, TableRows* rows);

}  // namespace TableDifference
