#pragma once

#include <QHash>
#include <QMap>
#include <QString>

/// Reads the text values of a registry as Wine stores it, in "system.reg" and "user.reg" of a bottle ("WINE
/// REGISTRY Version 2"). The wineserver writes them within half a minute of a change and when it ends.
namespace RegistryFile {

using Values = QMap<QString, QString>;  ///< by name in lower case; the default value has the name ""
using Keys = QHash<QString, Values>;    ///< by path below the prefix, in lower case

/// The keys below a prefix ("Software\\Classes\\") with their text values; other values are left out. Empty
/// for a link, a missing file or one of more than 64 MiB.
Keys read(const QString& path, const QString& prefix);

/// The same for a file's content. Skips lines that are invalid or longer than 4 KiB, and everything after the
/// first 50,000 keys.
Keys parse(const QByteArray& content, const QString& prefix);

}  // namespace RegistryFile
