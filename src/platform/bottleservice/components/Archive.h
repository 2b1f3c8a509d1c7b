#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

#include "bottleservice/result/Reason.h"

/// Unpacks archives of other publishers: tar in its compressions, zip, 7z, cab, also as part of a
/// self-extracting program. Archives are not trusted: no entry leaves the directory by its name or through a
/// link, none is a device, and the unpacked size is limited. Blocks; for worker threads.
namespace Archive {

/// Unpacks the whole archive into an existing empty directory. An invalid entry makes it fail; what was
/// unpacked before stays. `omitted` is the name of a directory whose content is not unpacked, wherever it
/// lies.
Reason unpack(const QString& archive, const QString& directory, const std::atomic_bool& cancelled,
              const QString& omitted = {});

/// Returns an error text when a link below the directory leads out of it, empty otherwise. For an inner
/// directory of an archive that is used without the rest.
QString leavingLink(const QString& directory);

/// Extracts files by name, in any directory and any case, also from cabinets and self-extracting programs
/// inside the archive. Files of the same name each get a path of their own in the directory.
Reason extract(const QString& archive, const QStringList& names, const QString& directory, QStringList* paths,
               const std::atomic_bool& cancelled);

}  // namespace Archive
