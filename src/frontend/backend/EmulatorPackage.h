#pragma once

#include <QString>
#include <QStringList>
#include <functional>

/// Which package an emulator comes from, for reports.
namespace EmulatorPackage {

/// What describe() must know of the machine's packages.
struct PackageQueries {
    std::function<QStringList(const QString& pattern)> installed;  ///< names of installed packages that match
    std::function<QString(const QString& package)> version;        ///< installed version
};
/// The queries that ask the package manager.
PackageQueries packageManager();

/// The package of a known emulator; empty for others.
QString knownPackage(const QString& emulator);

/// "package version" of the emulator that the bottle uses; empty when it uses none, or when its package can't
/// be found.
QString describe(const QString& bottle, const PackageQueries& queries = packageManager());
QString describeEmulator(const QString& emulator, const PackageQueries& queries);

}  // namespace EmulatorPackage
