#pragma once

#include <QString>

/// Where finished packages go: the setting "basic.deb_save_path.".
namespace SaveDirectory {

/// A directory that can be written to: the given one, made if it is missing, or else the fallback.
QString usable(const QString& configured, const QString& fallback);

/// The usable one of the setting, or the desktop, which then becomes the setting.
QString current();
void set(const QString& directory);

/// The newest file of the package in the directory; empty if there is none.
QString newestPackage(const QString& directory, const QString& packageName);

}  // namespace SaveDirectory
