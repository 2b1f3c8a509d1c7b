#pragma once

#include <QByteArray>
#include <QFile>
#include <optional>

namespace Fenk {

/// Reads files in directories where other programs may have put anything: opening a pipe would wait for ever,
/// and a link could lead to a file that is not theirs.
namespace RegularFile {

enum class Links { Refused, Followed };

/// Opens for reading, without waiting. Returns false, without logging, for anything but a regular file.
bool open(QFile& file, const QString& path, Links links = Links::Refused);

/// The content: at most `maximum` bytes, and one more as a sign that the file is longer. Nothing for a link
/// and for what open() refuses.
std::optional<QByteArray> read(const QString& path, qint64 maximum);

}  // namespace RegularFile

}  // namespace Fenk
