#pragma once

#include <QString>

/// From a path as Windows programs write it to the file that it means in a bottle. Only reads.
namespace WindowsPath {

/// With a drive letter: "C:\\x", "c:/x" or a bare "C:".
bool isWindowsPath(const QString& path);

/// Through the drive links of the bottle, without regard to case. A Unix path is returned as it is; a part
/// that does not exist leaves the rest as written.
QString toUnix(const QString& bottlePath, const QString& path);

}  // namespace WindowsPath
