#pragma once

#include "bottleservice/result/Reason.h"

/// Finds out whether a failure was caused by a full disk, which Wine and its tools do not report clearly.
namespace FullDisk {

/// Returns Reason::DiskFull when hardly anything fits on the disk of the directory any more, and logs the
/// original reason; otherwise returns that reason. Call before removing what was made, which frees space
/// again.
Reason explain(const QString& directory, const Reason& fault);

}  // namespace FullDisk
