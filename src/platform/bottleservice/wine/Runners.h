#pragma once

#include <QString>
#include <QStringList>
#include <optional>

/// One Wine that bottles can run on. Both paths are absolute.
struct Runner {
    QString name;
    QString wine;
    QString wineserver;
};

/// The Wines of this machine: the one in PATH under the default runner's name, a staging one that is
/// installed beside it, and every directory below "runners" of the data directory that holds a Wine, which
/// win. Asks the disk at each call, so that a runner that was just unpacked is there.
class Runners {
public:
    static const char DefaultName[];
    static const char StagingName[];
    static const char StagingDirectory[];  ///< where the packages of a staging Wine lie

    explicit Runners(const QString& dataDir, const QString& stagingDirectory = StagingDirectory)
        : m_directory(dataDir + "/runners"), m_stagingDirectory(stagingDirectory) {}

    QStringList names() const;
    std::optional<Runner> find(const QString& name) const;

    /// The wineserver of a runner, or of the machine's Wine when that runner is gone; empty if there is none.
    QString wineserverFor(const QString& name) const;

    /// The program of the Wine in a directory: in bin, or in files/bin as Proton has it. wine wins over
    /// wine64, which many do not have. Empty if there is none.
    static QString wineIn(const QString& directory);

    /// Whether 32-bit programs run on a Wine: it brings its own part for them, and needs either no 32-bit
    /// libraries of the machine (the new WoW64 manner) or finds their loader.
    static bool runs32Bit(const QString& wine, const QString& loader = "/lib/ld-linux.so.2");

    /// The version in what "wine --version" prints: "wine-8.0 (Debian 8.0~repack-4)" gives "8.0". Advice of
    /// the distribution may stand before that line.
    static QString parseVersion(const QByteArray& output);

private:
    QString m_directory;
    QString m_stagingDirectory;
};
