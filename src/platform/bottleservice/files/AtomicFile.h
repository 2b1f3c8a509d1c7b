#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Replaces a file completely or not at all, also when the machine loses power, and never through a link. The
/// new content first goes to a hidden file beside it, which a kill may leave behind. For any thread.
namespace AtomicFile {

/// Returns false with an error text on failure; the old file is then unchanged and nothing is left beside it.
/// Quick does not wait for the disk, for files that can be made again.
enum class Safety { Durable, Quick };
bool replace(const QString& path, const QByteArray& content, QString* error, Safety safety = Safety::Durable);

/// The hidden files that interrupted replacements have left in a directory.
QStringList leftovers(const QString& directory);

}  // namespace AtomicFile
