#pragma once

#include <QHash>
#include <QMap>
#include <QString>

/// Reads the texts of a registry as Wine keeps it on disk, in "system.reg" and "user.reg" of a bottle
/// ("WINE REGISTRY Version 2"). The wineserver writes them within half a minute of a change and when it ends.
namespace RegistryFile {

using Values = QMap<QString, QString>;  ///< by name in lower case; the default value has the name ""
using Keys = QHash<QString, Values>;    ///< by path below the prefix, in lower case

/// The keys below a prefix ("Software\\Classes\\") with their text values; others are left out. A file that
/// is larger than 64 MiB, a link or no such file has none.
Keys read(const QString& path, const QString& prefix);

/// The same for the content of a file. Lines that cannot be understood or are longer than 4 KiB are skipped,
/// and so is what follows the first 50,000 keys.
Keys parse(const QByteArray& content, const QString& prefix);

}  // namespace RegistryFile
