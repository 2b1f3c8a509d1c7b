#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <functional>

/// Copies directory trees and compares files. Blocks; for worker threads.
namespace FileTree {

/// Copies a tree into an existing empty directory: links as links, files by reflink where the file system
/// can. Sockets, pipes and devices are left out. Returns an error text, empty on success.
QString copy(const QString& from, const QString& to, const std::atomic_bool& cancelled);

/// Copies one regular file to a path that must not exist. Returns false on failure.
bool copyFile(const QString& from, const QString& to);

/// Gets the bytes that were copied since the last call; false ends the copy.
using Step = std::function<bool(qint64 bytes)>;
enum class Copied { Whole, Stopped, Unreadable, Unwritable };
/// The same for names that need not be text. A failure leaves errno, and a part of the file.
Copied copyFile(const QByteArray& from, const QByteArray& to, const Step& step = {});

/// Whether both are regular files with the same bytes. A link counts as its target.
bool sameContent(const QString& one, const QString& other);

}  // namespace FileTree
