#pragma once

#include <QStringList>
#include <QVector>

#include "shell/configuration/tables/TableRows.h"

/// What a scan would do to one row of the overrides.
struct ScanChange {
    QString name;  ///< in lower case
    bool isNew;
    int before;  ///< load method; not for a new row
};

namespace ScanChanges {

/// For DLLs or programs that a scan has found and that get this load method. Those that have it already are
/// left out.
QVector<ScanChange> of(const TableRows& overrides, const QStringList& found, int method);

}  // namespace ScanChanges
