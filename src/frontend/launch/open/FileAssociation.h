#pragma once

#include <QJsonObject>
#include <QString>
#include <optional>

/// The Windows program that is registered in a bottle for a file type or URL scheme. Windows programs can
/// write the file as well, so all values are untrusted.
struct FileAssociation {
    QString progId;      ///< never empty
    QString executable;  ///< Windows path
    QString comment;
    QString friendlyName;
    QString icon;  ///< file

    /// The name to display: the best one available.
    QString displayName() const;

    /// Reads "assosiate.json" in the directory of the bottle. `key` is an extension with its dot or a URL
    /// scheme. Empty without such a file or key; an invalid file or record is logged.
    static std::optional<FileAssociation> find(const QString& bottlePath, const QString& key);
    /// All associations of a bottle by key, as in the file. Empty if they can't be read.
    static QJsonObject all(const QString& bottlePath);
};
