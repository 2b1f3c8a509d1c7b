#pragma once

#include <QVector>
#include <atomic>

#include "bottleservice/components/Sources.h"

/// An installer that the user has got in another way, in the place of one that could not be fetched.
namespace ChosenFile {

struct Taken {
    QString file;       ///< which of the wanted ones it is
    QByteArray sha256;  ///< of its content
    Reason failure;     ///< without one it has been taken
};

/// Copies the file into the directory, under the name of the wanted file that it is: the one with its
/// checksum, or, among those whose checksum is not known, the one with its name. Any other file is refused
/// with what is wanted instead. Takes regular files of at most Source::MaximumBytes only, through no link.
/// For a worker thread.
Taken take(const QString& path, const QVector<Source>& wanted, const QString& directory,
           const std::atomic_bool& cancelled);

/// Notes that the user has chosen the file, for Sources: a file without a known checksum may then be used.
/// Returns a reason when it could not be written. For any thread.
Reason remember(const QString& dataDir, const QString& file, const QByteArray& sha256);

/// Removes copies that a service which was killed has left in the directory. Before the first take().
void removeLeftovers(const QString& directory);

/// What was noted: file to checksum.
QJsonObject remembered(const QString& dataDir);

}  // namespace ChosenFile
