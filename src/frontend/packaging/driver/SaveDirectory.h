#pragma once

#include <QString>
#include <functional>

class QObject;

/// Where finished packages go: the setting "basic.deb_save_path.". The directory may be on a server that does
/// not answer, so that the GUI thread never looks at it.
namespace SaveDirectory {

/// Calls `take` with the usable directory of the setting, or the desktop, which then becomes the setting;
/// not if context is destroyed first.
void find(QObject* context, const std::function<void(const QString&)>& take);

/// Makes a directory the setting if it is usable, and tells whether it is.
void change(const QString& directory, QObject* context, const std::function<void(bool)>& then);

/// For worker threads. A directory that can be written to: the given one, made if it is missing, or else the
/// fallback.
QString usable(const QString& configured, const QString& fallback);

/// For worker threads. The newest file of the package in the directory; empty if there is none.
QString newestPackage(const QString& directory, const QString& packageName);

}  // namespace SaveDirectory
