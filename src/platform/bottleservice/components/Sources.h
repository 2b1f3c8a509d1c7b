#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "bottleservice/result/Reason.h"

/// A file of somebody else's that a component is made of.
struct Source {
    static constexpr qint64 MaximumBytes = 8LL * 1024 * 1024 * 1024;

    QString file;           ///< a plain name
    QStringList addresses;  ///< paths and http(s) or file URLs, in the order in which they are tried
    qint64 size = -1;       ///< in bytes, -1 when it is not known
    QByteArray sha256;      ///< in lower case hexadecimal; empty when it is not known
    bool isChosen = false;  ///< the checksum is that of a file which the user has chosen; none was known

    /// An address as it may be shown: without a name and password, and not too long.
    static QString shownAddress(const QString& address);
};

/// Where files come from. sources.json beside the catalogue is the deployment's, sources.json in the data
/// directory the user's, whose entries win:
///   {"files": {name: {"addresses": [...], "size": bytes, "sha256": hex, "source": where that was read}},
///    "archives": {"runner" | "dxvk" | "vkd3d": {component: file name}},
///    "mirrors": [directory or address, ...],    looked into first, for every file
///    "allow_unverified": bool}                  use files whose checksum is not known; false if it is
///    missing
/// Entries that make no sense are told to the log and are as good as missing. What the user has chosen by
/// hand (see ChosenFile) stands in where no checksum is known.
class Sources {
public:
    Sources(const QString& catalogueDir, const QString& dataDir);

    Source find(const QString& file) const;

    /// The archive of a component, or empty.
    QString archiveOf(const QString& kind, const QString& component) const;
    /// Those that would not be refused.
    QStringList components(const QString& kind) const;

    /// Empty, or why the file may not be used.
    Reason refusal(const Source& source) const;
    /// Empty, or why the component is not fetched.
    Reason refusal(const QString& kind, const QString& component) const;

    /// Whether a text may be the name of a file or a directory of ours.
    static bool isPlainName(const QString& name);

private:
    void add(const QString& path);
    void addArchives(const QString& path, const QJsonObject& archives);

    QJsonObject m_files;
    QJsonObject m_archives;
    QJsonObject m_chosen;
    QStringList m_mirrors;
    bool m_allowUnverified = false;
};
