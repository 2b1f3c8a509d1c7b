#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>

/// Queries of the package manager. Each starts child processes in an English locale and waits for them, at
/// most 30 s each. A name without architecture stands for all those that have the package. A machine without
/// the package manager has no package installed.
/// @{

/// Those of the names or patterns that are installed, each once.
QStringList installedPackages(const QStringList& packages);
/// The rule behind installedPackages(): lines of "name|status".
QStringList parseInstalledPackages(const QString& output);

/// The installed version with epoch and revision; empty when there is none.
QString packageVersion(const QString& package);
/// The value of "Version:" in the text of "dpkg -s".
QString parsePackageVersion(const QString& status);

/// Whether exactly this package is installed; version, if given, is set when it is.
bool packageInstalled(const QString& package, QString* version = nullptr);
/// The version after "install ok installed"; empty when no architecture is installed. dpkg-query prints the
/// status and version of each architecture directly after one another.
QString parseInstalledVersion(const QString& output);

/// Whether the package manager could install the package: it has a version of it. False for what is no name
/// of a package.
bool packageAvailable(const QString& package);
/// The rule behind packageAvailable(): the text of "apt-cache policy".
bool parseHasCandidate(const QString& policy);
/// @}

/// Package name to the version requirement that is not met; the requirement is empty where any version would
/// do.
using PackageRequirements = QMap<QString, QString>;

/// The queries that unmetDependencies() makes.
struct PackageQueries {
    std::function<bool(const QString& package, QString* version)> installed;
    /// relation is a word of dpkg: "lt", "le", "eq", "ge", "gt".
    std::function<bool(const QString& installed, const QString& relation, const QString& required)> compare;
};

/// What of a Debian package relation field ("a, b | c (>= 2.0)") is not met. Of a term whose alternatives all
/// fail, each alternative is listed.
PackageRequirements unmetDependencies(const QString& expression);
PackageRequirements unmetDependencies(const QString& expression, const PackageQueries& queries);
bool dependenciesMet(const QString& expression);
