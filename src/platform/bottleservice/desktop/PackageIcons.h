#pragma once

#include <QStandardPaths>
#include <QString>

/// The icons on the user's desktop that a packaged program's first start makes.
namespace PackageIcons {

/// Removes those of the package: regular files that start its programs. Blocks on a slow disk; logs failures.
void remove(const QString& package,
            const QString& desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));

}  // namespace PackageIcons
