#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

#include "bottleservice/result/Reason.h"

/// Unpacks what others have packed: tar in its compressions, zip, 7z, cab, also behind the program of a
/// self-extracting one. Nothing is trusted: no entry leaves the directory by its name or through a link, none
/// is a device, and there is a limit on how much comes out. For worker threads.
namespace Archive {

/// The whole archive into an existing empty directory. A bad entry refuses the archive; what was unpacked by
/// then stays. omitted is a directory whose content is not unpacked, wherever it lies.
Reason unpack(const QString& archive, const QString& directory, const std::atomic_bool& cancelled,
              const QString& omitted = {});

/// Empty, or a sentence about a link below the directory that leads out of it. An archive's inner directory
/// may be all that is kept of it.
QString leavingLink(const QString& directory);

/// Files by name, without directories and in any case, also out of cabinets and self-extracting programs in
/// the archive. Several of one name each get a path of their own in the directory.
Reason extract(const QString& archive, const QStringList& names, const QString& directory, QStringList* paths,
               const std::atomic_bool& cancelled);

}  // namespace Archive
