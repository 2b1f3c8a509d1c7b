#pragma once

#include <QJsonObject>

/// The sizes of files that were fetched, "file-sizes.json" in the data directory: {sha256: bytes}. A file
/// with a known checksum has one size, which often nobody has published. For the main thread.
namespace FileSizes {

QJsonObject remembered(const QString& dataDir);

/// The content of that size has been checked. A failure to write is logged.
void remember(const QString& dataDir, const QByteArray& sha256, qint64 size);

}  // namespace FileSizes
