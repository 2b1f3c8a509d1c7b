#pragma once

#include <QString>
#include <atomic>

/// Copies of directory trees, for worker threads.
namespace FileTree {

/// Copies a tree into an existing empty directory: links as links, files by reflink where the file system
/// can; sockets and the like are left out. Empty, or a sentence.
QString copy(const QString& from, const QString& to, const std::atomic_bool& cancelled);

/// Copies one regular file to a path that must not exist.
bool copyFile(const QString& from, const QString& to);

/// Whether both are regular files with the same bytes. A link counts as what it points at.
bool sameContent(const QString& one, const QString& other);

}  // namespace FileTree
