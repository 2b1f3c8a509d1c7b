#pragma once

#include <QByteArray>
#include <QString>

/// Brings the registry of a bottle that is a copy of a template up to the template of another Wine, on the
/// files that Wine keeps ("WINE REGISTRY Version 2"). wineboot cannot do that in such a bottle: it writes
/// through the links to Wine's own PE files. For worker threads; nothing may run in the bottle.
namespace RegistryMerge {

/// The text of own with what the new template brings: keys and values that the old one does not have are
/// added, and a value that own still has as the old template had it becomes the new one's. What was changed
/// or removed in the bottle stays so. Nothing is removed. Keys that Wine writes at each start, and what
/// identifies a machine, stay. With an empty text for the old template only what is missing is added. Own
/// unchanged where the texts are no registries of the same architecture.
QByteArray merged(const QByteArray& own, const QByteArray& oldTemplate, const QByteArray& newTemplate);

/// Merges system.reg, user.reg and userdef.reg of a prefix. The old template may be gone. Empty, or an error
/// text.
QString update(const QString& prefix, const QString& oldTemplate, const QString& newTemplate);

}  // namespace RegistryMerge
