#pragma once

#include <QJsonObject>
#include <QString>
#include <optional>

/// The program that a bottle's Windows programs have registered for one kind of file or link. Windows
/// programs can write where it is kept as well: its texts are no more than texts.
struct FileAssociation {
    QString progId;      ///< never empty
    QString executable;  ///< Windows path
    QString comment;
    QString friendlyName;
    QString icon;  ///< file

    /// The name to show, from the best that is known.
    QString displayName() const;

    /// Of a bottle, from "assosiate.json" in its directory. `key` is an extension with its dot or the scheme
    /// of a link. Nothing without such a file or key; a file or record that makes no sense is logged.
    static std::optional<FileAssociation> find(const QString& bottlePath, const QString& key);
    /// All of a bottle as they are kept, by key. Empty when they can't be read.
    static QJsonObject all(const QString& bottlePath);
};
