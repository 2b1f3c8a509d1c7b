#pragma once

#include <QString>

/// What a directory takes on the disk.
namespace DirectorySize {

/// In bytes, as the file system counts them: a file with several names once, and of a copy whose blocks are
/// shared all. Follows no link and leaves no file system. Reads the whole tree; for worker threads. 0 for
/// what is no directory.
qint64 of(const QString& path);

}  // namespace DirectorySize
