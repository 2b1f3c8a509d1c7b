#pragma once

#include <QString>

/// Wine and its tools say little of a disk that is full.
namespace FullDisk {

/// The fault as it is, or behind a sentence about the disk of the directory when hardly anything fits on it
/// any more. Asked before what was made is removed.
QString explain(const QString& directory, const QString& fault);

}  // namespace FullDisk
