#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// Reads files in places where programs may have put anything: only regular files, never through a link,
/// never waiting for somebody at the other end of a pipe.
namespace PlainFile {

/// The content, at most `maximum` bytes and one more as a sign that there is more. Nothing for what is no
/// such file or cannot be read.
std::optional<QByteArray> read(const QString& path, qint64 maximum);

}  // namespace PlainFile
