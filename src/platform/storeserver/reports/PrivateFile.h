#pragma once

#include <QByteArray>
#include <QString>

namespace StoreServer {

/// Files and directories for their owner alone, which are on the disk when a function returns. Each returns
/// an error of the system, 0 if all is well.
namespace PrivateFile {

/// One that is there already, or a link to one, is well.
int makeDirectory(const QString& path);
/// A file that is not there yet.
int write(const QString& path, const QByteArray& content);
/// The names in a directory.
int syncDirectory(const QString& path);
/// Gives a file a second name, or a copy where a file system has no such names, and tells what that takes.
int addName(const QString& from, const QString& to, qint64* copiedBytes);

}  // namespace PrivateFile

}  // namespace StoreServer
