#pragma once

#include <QString>
#include <atomic>

#include "bottleservice/backup/BackupList.h"
#include "bottleservice/result/Reason.h"

/// Completes the unpacked files of a bottle with what its new machine has: Wine's own files, the links to the
/// user's folders, the user's name, and on another build of Wine that one's new files and registry.
namespace RestoredPrefix {

/// The name of the user's directory in a prefix; empty if there is none. Of several it is the preferred one,
/// else that of the user who runs this process.
QString userOf(const QString& prefix, const QString& preferred = {});

struct Place {
    QString directory;     ///< with the unpacked files
    QString templatePath;  ///< of the Wine that the bottle will run on; read only
    QString oldRegistry;   ///< directory with the registry of the old template
    QString wine;          ///< the Wine's program
};

/// Blocks; for worker threads. Returns a reason, empty on success; without a whole prefix there is none. A
/// file that this Wine does not have is left out. `isOtherBuild` tells whether the Wine is another one than
/// at the time of the backup.
Reason complete(const BackupList& list, const Place& place, bool* isOtherBuild,
                const std::atomic_bool& cancelled);

}  // namespace RestoredPrefix
