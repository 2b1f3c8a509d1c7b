#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Replaces a file at once or not at all, also when the machine loses its power, and never through a link.
/// The new content first lies beside it under a hidden name of the service's own, which a kill may leave
/// behind.
namespace AtomicFile {

/// True, or false with a sentence; then the old file is as it was and nothing lies beside it.
/// Quick does without the wait for the disk, for what can be made again.
enum class Safety { Durable, Quick };
bool replace(const QString& path, const QByteArray& content, QString* error, Safety safety = Safety::Durable);

/// What interrupted replacements have left in a directory.
QStringList leftovers(const QString& directory);

}  // namespace AtomicFile
