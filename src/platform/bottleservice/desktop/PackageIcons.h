#pragma once

#include <QStandardPaths>
#include <QStringList>

/// The icons on the user's desktop that a packaged program's first start makes (docs/PACKAGES.md).
namespace PackageIcons {

/// Those of a bottle: the ones that it has recorded and that the desktop shows, as far as they are regular
/// files that start a program of the package. Blocks on a slow disk.
QStringList find(const QString& bottlePath, const QString& package,
                 const QString& desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));

/// Logs failures.
void remove(const QStringList& icons);

}  // namespace PackageIcons
