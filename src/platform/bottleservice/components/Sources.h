#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "bottleservice/result/Reason.h"

/// A file of another publisher that a component consists of.
struct Source {
    static constexpr qint64 MaximumBytes = 8LL * 1024 * 1024 * 1024;

    QString file;           ///< a plain name
    QStringList addresses;  ///< paths and http(s) or file URLs, in the order in which they are tried
    qint64 size = -1;       ///< in bytes, -1 when it is not known
    QByteArray sha256;      ///< in lower case hexadecimal; empty when it is not known
    bool isChosen = false;  ///< the user has chosen the file; the checksum is of that file, none was known

    /// The address as it may be shown: without user name and password, and of limited length.
    static QString shownAddress(const QString& address);
};

/// Where files come from: sources.json in the catalogue and the user's sources.json in the data directory,
/// whose entries take precedence:
///   {"files": {name: {"addresses": [...], "size": bytes, "sha256": hex, "source": where that was read}},
///    "archives": {"runner" | "dxvk" | "vkd3d": {component: file name}},
///    "mirrors": [directory or address, ...],    tried first, for every file
///    "allow_unverified": bool}                  allow files without a known checksum; false by default
/// Invalid entries are logged and ignored. Where no checksum is known, that of a file which the user has
/// chosen (ChosenFile) is used; where no size is known, that of the file when it was fetched (FileSizes).
class Sources {
public:
    Sources(const QString& catalogueDir, const QString& dataDir);

    Source find(const QString& file) const;

    /// The file name of a component's archive, or empty.
    QString archiveOf(const QString& kind, const QString& component) const;
    /// The components that can be fetched.
    QStringList components(const QString& kind) const;

    /// Why the file may not be used; empty if it may.
    Reason refusal(const Source& source) const;
    /// Why the component cannot be fetched; empty if it can.
    Reason refusal(const QString& kind, const QString& component) const;

    /// Whether the text may be used as the name of a file or directory below the data directory.
    static bool isPlainName(const QString& name);

private:
    void add(const QString& path);
    void addArchives(const QString& path, const QJsonObject& archives);

    QJsonObject m_files;
    QJsonObject m_archives;
    QJsonObject m_chosen;
    QJsonObject m_sizes;  ///< by checksum, of files that were fetched before
    QStringList m_mirrors;
    bool m_allowUnverified = false;
};
