#pragma once

#include <QString>
#include <atomic>

#include "bottleservice/components/OfflineList.h"
#include "bottleservice/result/Reason.h"

class QFile;

/// Reads and writes files of exported components (format: OfflineList.h). Such a file is not trusted: it is a
/// plain tar file, so that it cannot unpack to more than it is, and it has exactly the regular files that its
/// list names, each once, with the listed size and checksum; anything else in it makes all of it unusable.
/// Blocks; for worker threads. Reasons name the file without its directory; what is wrong with it is logged.
namespace OfflineArchive {

extern const char ListEntry[];    ///< name of the list's entry
extern const char FilesPrefix[];  ///< of the names of all other entries

/// Reads the list alone, without checking the files. The path may lead through a link, as users' folders do.
Reason readList(const QString& path, OfflineList* list);
/// The same for an open file. `name` is for the reason.
Reason readList(QFile* file, const QString& name, OfflineList* list);

/// Unpacks all files into an existing empty directory. Only success means that they are what the list says.
Reason unpack(const QString& path, const QString& directory, OfflineList* list,
              const std::atomic_bool& cancelled);

/// Sets the sizes and checksums of the list's files, which lie in the directory. Takes the components out of
/// the list that have a file which can't be read, and the files that no other has; returns why, by component.
QMap<QString, Reason> measure(OfflineList* list, const QString& directory, const std::atomic_bool& cancelled);

/// Writes the files of a measured list into an archive of that absolute path, which must not exist, and must
/// not have more files or a longer list than readList() takes. The archive has its name only when it is
/// complete. `record` is the path of a file that has the name of the unfinished archive
/// while there is one, for removeUnfinished().
Reason write(const QString& path, const OfflineList& list, const QString& directory, const QString& record,
             const std::atomic_bool& cancelled);

/// Removes the unfinished archive of a service that was killed.
void removeUnfinished(const QString& record);

}  // namespace OfflineArchive
