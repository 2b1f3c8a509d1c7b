#pragma once

#include <QString>

/// Disk usage of a directory.
namespace DirectorySize {

/// In bytes of allocated blocks. Counts a file with several hard links once, and blocks that are shared with
/// another file in full. Follows no symbolic link and stays on one file system. Walks the whole tree, so
/// call it on a worker thread. Returns 0 for anything but a directory.
qint64 of(const QString& path);

}  // namespace DirectorySize
