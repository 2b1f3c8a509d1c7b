#pragma once

#include <QString>

/// Tells builds of Wine apart, on any machine.
namespace WineBuild {

/// A checksum (SHA-256, hex) of the names, sizes and headers of a Wine's PE files. Another build differs in
/// the headers, which have the times and layouts of all sections. Empty when the files are not found. Reads
/// some thousand files; for worker threads.
QString checksum(const QString& wine);

}  // namespace WineBuild
