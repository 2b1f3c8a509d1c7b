#pragma once

#include <QString>
#include <QVector>
#include <atomic>

#include "manifest/Manifest.h"

/// Puts the files of a manifest into a bottle. Directories are found without regard to case and made where
/// they are missing; one that is a link, such as those that lead to the user's own documents, is refused, so
/// that no file leaves the bottle. An existing file is replaced and never written into, also when it is a
/// link to a file; a link to a directory is refused.
namespace BottleFiles {

/// Blocks; for worker threads. Returns an error text, empty on success.
QString write(const QString& bottlePath, const QVector<Manifest::File>& files,
              const std::atomic_bool& cancelled);

}  // namespace BottleFiles
