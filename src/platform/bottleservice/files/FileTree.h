#pragma once

#include <QString>
#include <atomic>

/// Copies directory trees and compares files. Blocks; for worker threads.
namespace FileTree {

/// Copies a tree into an existing empty directory: links as links, files by reflink where the file system
/// can. Sockets, pipes and devices are left out. Returns an error text, empty on success.
QString copy(const QString& from, const QString& to, const std::atomic_bool& cancelled);

/// Copies one regular file to a path that must not exist. Returns false on failure.
bool copyFile(const QString& from, const QString& to);

/// Whether both are regular files with the same bytes. A link counts as its target.
bool sameContent(const QString& one, const QString& other);

}  // namespace FileTree
