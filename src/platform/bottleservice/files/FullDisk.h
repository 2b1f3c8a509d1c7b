#pragma once

#include "bottleservice/result/Reason.h"

/// Wine and its tools say little of a disk that is full.
namespace FullDisk {

/// The fault as it is, or Reason::DiskFull when it comes from the disk of the directory, on which hardly
/// anything fits any more; the fault itself goes to the log. Asked before what was made is removed.
Reason explain(const QString& directory, const Reason& fault);

}  // namespace FullDisk
