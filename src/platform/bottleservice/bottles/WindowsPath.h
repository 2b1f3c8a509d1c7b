#pragma once

#include <QString>

/// From a path as Windows programs write it to the file that it means in a bottle. Only reads.
namespace WindowsPath {

/// With a drive letter: "C:\\x", "c:/x" or a bare "C:". Shortcuts and
/// registries use both slashes; the application's own test, of its records, wants the backslash.
bool isWindowsPath(const QString& path);

/// Through the drive links of the bottle, without regard to case. A Unix path is returned as it is. From the
/// first part on that does not exist the path stays as written.
QString toUnix(const QString& bottlePath, const QString& path);

}  // namespace WindowsPath
