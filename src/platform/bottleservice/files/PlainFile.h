#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// Reads files in directories where programs may have put anything: only regular files, never through a link,
/// and without waiting for the other end of a pipe.
namespace PlainFile {

/// The content, at most `maximum` bytes and one more, which tells that the file is longer. Nothing for
/// anything but a regular file, and for one that cannot be read.
std::optional<QByteArray> read(const QString& path, qint64 maximum);

}  // namespace PlainFile
