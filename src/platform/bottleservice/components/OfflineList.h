#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <optional>

/// The list of contents of a file of exported components, which is an uncompressed tar file: first the entry
/// "components.json", which is this list, then each listed file once as "files/<name>". The list is
///   {"format": "cellarix-components", "version": 1,
///    "components": {name: [names of the files that its installation needs, ...]},
///    "files": {name: {"size": bytes, "sha256": hexadecimal}}}
/// Names are plain names (Sources::isPlainName). A file has no recipes: how a component is installed, and
/// which checksums count where they are known, is decided by the catalogue of the machine that imports it.
struct OfflineList {
    static constexpr int MaximumBytes = 1024 * 1024;  ///< of the list's text
    static constexpr int MaximumComponents = 1000;
    static constexpr int MaximumFiles = 4000;

    struct File {
        qint64 size = 0;
        QByteArray sha256;  ///< in lower case hexadecimal
    };

    QMap<QString, QStringList> components;
    QMap<QString, File> files;

    /// The text is not trusted. Returns nothing, and a statement without a stop, for what is no such list.
    static std::optional<OfflineList> parse(const QByteArray& text, QString* fault);
    QByteArray toJson() const;

    /// Of all files together.
    qint64 bytes() const;
};
