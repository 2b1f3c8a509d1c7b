#pragma once

#include <QStringList>
#include <functional>

#include "packaging/config/PackageEntry.h"

/// Which directory goes into a package with which program. Directories that lie in each other become the
/// widest one, so that no file is packed twice.
namespace PackageDirectories {

/// The form in which paths are compared: canonical, or absolute and clean where there is no such file.
using Canonical = std::function<QString(const QString&)>;
QString canonical(const QString& path);

/// Whether the path is the directory or lies in it. Both are in the compared form.
bool isInside(const QString& directory, const QString& path);

/// Whether a directory is so close to the root that it is never packed whole.
bool isNearRoot(const QString& directory);

/// Where the program's file will lie in the bottle of the package, and logs it: the directory that goes along
/// moves to drive C, a file alone into a directory of its name. The path stays as it is for a program of the
/// bottle and for one that is not below its directory.
QString pathPackaged(const PackageEntry& entry, const QString& bottleDir, const Canonical& canonical);

/// Gives a program a directory and widens it by those of other programs. Returns the ids of all entries that
/// have changed, in the order of the map; nothing when the directory is near the root.
QStringList assign(PackageEntries* entries, const QString& id, const QString& directory,
                   const QString& bottleDir, const Canonical& canonical);

}  // namespace PackageDirectories
