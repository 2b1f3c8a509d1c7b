#pragma once

#include <QJsonObject>
#include <QString>

/// The two JSON files of a package's configuration, in the directory pkgcfg of the bottle.
class PackageFiles {
public:
    static constexpr const char* InfoName = "/pkgcfg/pkginfo.json";
    static constexpr const char* SourceName = "/pkgcfg/pkgsrc.json";

    explicit PackageFiles(const QString& bottleDir) : m_bottleDir(bottleDir) {}

    /// A broken file reads as an empty object. A file that can't be opened does, too, with a line in the log.
    QJsonObject read(const char* name) const;
    bool exists(const char* name) const;

    /// Replaces the file as a whole, in indented JSON. Makes the directory where it is missing. Logs success
    /// and failure.
    bool write(const char* name, const QJsonObject& object) const;

private:
    QString m_bottleDir;
};
