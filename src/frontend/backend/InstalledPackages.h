#pragma once

#include <QString>
#include <QStringList>

/// Questions to the package manager. Each starts a child process in an English locale and waits for it, at
/// most 30 s.
namespace InstalledPackages {

/// Those of the names or patterns that are installed; empty when the package manager can't be asked.
QStringList installed(const QStringList& names);
/// The rule behind installed(): lines of "name|status".
QStringList parseInstalled(const QString& output);

/// The installed version with epoch and revision; empty when the package isn't installed.
QString version(const QString& package);

}  // namespace InstalledPackages
