#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "bottleservice/result/Reason.h"

/// A Wine that bottles can run on. Both paths are absolute.
struct Runner {
    QString name;
    QString wine;
    QString wineserver;
};

/// The Wines of this machine: the one in PATH under the default runner's name, a staging one of a package,
/// and every directory below "runners" of the data directory that holds a Wine, which takes precedence. Reads
/// the disk at each call, so that a runner is found as soon as it is unpacked.
class Runners {
public:
    static const char DefaultName[];
    static const char StagingName[];
    static const char StagingDirectory[];  ///< where packages of a staging Wine install it

    explicit Runners(const QString& dataDir, const QString& stagingDirectory = StagingDirectory)
        : m_directory(dataDir + "/runners"), m_stagingDirectory(stagingDirectory) {}

    QStringList names() const;
    std::optional<Runner> find(const QString& name) const;

    /// Why a runner cannot be used that find() does not know.
    static Reason missing(const QString& name);

    /// The wineserver of a runner, or of the default Wine when that runner is not installed; empty if there
    /// is none.
    QString wineserverFor(const QString& name) const;

    /// The Wine program in a directory: in "bin", or in "files/bin" as Proton has it; "wine" before "wine64",
    /// which many do not have. Empty if there is none.
    static QString wineIn(const QString& directory);

    /// Whether 32-bit programs run on a Wine: it has its own part for them, and either needs no 32-bit
    /// libraries of the machine (new WoW64) or finds their loader.
    static bool runs32Bit(const QString& wine, const QString& loader = "/lib/ld-linux.so.2");

    /// The version in the output of "wine --version": "wine-8.0 (Debian 8.0~repack-4)" gives "8.0". Other
    /// lines of the distribution may stand before it.
    static QString parseVersion(const QByteArray& output);

private:
    QString m_directory;
    QString m_stagingDirectory;
};
