#pragma once

#include <QString>

/// Windows paths in the records of programs, and the files that they name.
namespace WindowsPath {

/// Whether the text is an absolute Windows path, such as C:\x, C: or C:\\.
bool isWindowsPath(const QString& path);
/// Whether it names a drive and nothing on it.
bool isDrive(const QString& path);

/// The Unix path of a Windows path, through the drive links in the bottle's dosdevices. Line ends and tabs
/// become blanks. When the path as written isn't there, its parts are matched without regard to case; when
/// one part has no match, the path as written comes back.
QString toUnix(const QString& bottlePath, const QString& windowsPath);

/// The existing path below base whose parts equal those of relative without regard to case, an exact match
/// first; empty when a part has no match.
QString resolveIgnoringCase(const QString& base, const QString& relative);

}  // namespace WindowsPath
