#pragma once

#include <QString>
#include <QStringList>
#include <functional>

/// The package that an emulator comes from, for reports.
namespace EmulatorPackage {

/// The queries about the machine's packages that describe() makes.
struct PackageSource {
    std::function<QStringList(const QString& pattern)> installed;  ///< names of installed packages that match
    std::function<QString(const QString& package)> version;        ///< installed version
};
/// The source that asks the package manager.
PackageSource packageManager();

/// The package of a known emulator; empty for others.
QString knownPackage(const QString& emulator);

/// "package version" of the emulator that the bottle uses; empty when it uses none, or when its package can't
/// be found.
QString describe(const QString& bottle, const PackageSource& packages = packageManager());
QString describeEmulator(const QString& emulator, const PackageSource& packages);

}  // namespace EmulatorPackage
