#pragma once

#include <QVector>
#include <atomic>

#include "bottleservice/components/Sources.h"

/// Takes an installer that the user has got elsewhere, in place of one that could not be fetched.
namespace ChosenFile {

struct Taken {
    QString file;       ///< which of the wanted ones it is
    QByteArray sha256;  ///< of its content
    Reason failure;     ///< empty on success
};

/// Copies the file into the directory, under the name of the wanted file that it is: the one with the same
/// checksum or, among those without a known checksum, the one with the same name. Fails for any other file
/// and says what is wanted. Only regular files of at most Source::MaximumBytes, not through a link. Blocks;
/// for worker threads.
Taken take(const QString& path, const QVector<Source>& wanted, const QString& directory,
           const std::atomic_bool& cancelled);

/// Records that the user has chosen the file, so that Sources allows it without a known checksum. Returns a
/// reason when that could not be written. For any thread.
Reason remember(const QString& dataDir, const QString& file, const QByteArray& sha256);

/// Removes unfinished copies of a service that was killed. Call before the first take().
void removeLeftovers(const QString& directory);

/// The recorded files, file to checksum.
QJsonObject remembered(const QString& dataDir);

}  // namespace ChosenFile
