#pragma once

#include <QByteArray>
#include <QString>

/// Updates the registry of a bottle that is a copy of a template to the template of another Wine, in the
/// files that Wine stores ("WINE REGISTRY Version 2"). wineboot cannot do that in such a bottle: it writes
/// through the links to Wine's own PE files. Nothing may run in the bottle. Blocks; for worker threads.
namespace RegistryMerge {

/// Merges one file. Keys and values that only the new template has are added. A value that `own` still has as
/// the old template had it is replaced by the new template's. Everything else stays, also what was changed or
/// removed in the bottle, what Wine writes at each start and what identifies a machine. With an empty
/// oldTemplate only missing values are added. Returns `own` unchanged when the texts are no registries of the
/// same architecture.
QByteArray merged(const QByteArray& own, const QByteArray& oldTemplate, const QByteArray& newTemplate);

/// Merges system.reg, user.reg and userdef.reg of a prefix. The old template may be missing. Returns an error
/// text, empty on success.
QString update(const QString& prefix, const QString& oldTemplate, const QString& newTemplate);

}  // namespace RegistryMerge
