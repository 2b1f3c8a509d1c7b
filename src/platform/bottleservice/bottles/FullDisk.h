#pragma once

#include "bottleservice/Reason.h"

/// Wine and its tools say little of a disk that is full.
namespace FullDisk {

/// The fault as it is, or that the disk of the directory is full when hardly anything fits on it any more;
/// the fault itself then only goes to the log. Asked before what was made is removed.
Reason explain(const QString& directory, const Reason& fault);

}  // namespace FullDisk
