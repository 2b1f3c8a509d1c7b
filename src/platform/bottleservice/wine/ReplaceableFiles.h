#pragma once

#include <QString>

/// The files of a fresh prefix that an installer or a component may overwrite. Wine opens a link's target for
/// writing, so these are real files in every bottle; all others may be links to the runner's own.
namespace ReplaceableFiles {

/// The path is relative to the prefix, such as "drive_c/windows/system32/comctl32.dll".
bool contains(const QString& path);

}  // namespace ReplaceableFiles
