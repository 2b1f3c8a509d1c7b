#pragma once

#include <QString>

class QUrl;

/// Names of set-up programs that come from the net. A name is a file's name in a directory of the user, never
/// a path.
namespace SetupFileName {

/// What the first bytes of a file say: "exe", "msi", "zip", or empty for anything else.
QString suffixOf(const QByteArray& firstBytes);
constexpr int FirstBytes = 8;

/// The name for a download: from the header Content-Disposition if it has one, from the address, or else from
/// the application; with the suffix.
QString of(const QUrl& url, const QByteArray& disposition, const QString& appName, const QString& suffix);

/// Whether the header, or else the address, names a YAML file.
bool isManifestName(const QUrl& url, const QByteArray& disposition);

/// The name in the directory, with a number where that is taken.
QString freePath(const QString& directory, const QString& name);

}  // namespace SetupFileName
