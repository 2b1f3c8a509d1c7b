#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

/// A directory, file or link whose content is in a backup.
struct BackupEntry {
    enum class Type { Directory, File, Link };

    Type type = Type::File;
    QByteArray path;        ///< see BackupPath
    qint64 size = 0;        ///< of a file, in bytes
    qint64 modifiedMs = 0;  ///< of a file, since the epoch
    int mode = 0;           ///< of a file; only 0755 counts
    QByteArray target;      ///< of a link; relative and inside the bottle
    QByteArray attributes;  ///< of DOS, such as "0x2" for a hidden file; usually empty
    qint64 holes = 0;       ///< bytes of a file that are zero and take no room on the disk
};

/// The list at the beginning of a backup (docs/BACKUP.md): what the bottle is and what it consists of. A list
/// that was parsed may be used without further checks: every path lies in the bottle, its directory stands
/// before it, no name is taken twice, no link leads out, and the sizes add up.
struct BackupList {
    static constexpr int Format = 1;
    static constexpr int MaximumBytes = 96 * 1024 * 1024;  ///< of the list's text
    static constexpr int MaximumEntries = 500000;
    static constexpr int MaximumWineFiles = 200000;
    static constexpr int MaximumNames = 1000;  ///< of programs, standard links, and what was left out
    static constexpr char UnknownBuild[] = "unknown";

    QString name;    ///< of the bottle
    QString runner;  ///< of the bottle
    QString build;   ///< checksum of the Wine (WineBuild) or UnknownBuild; empty for no copy of a template
    QString user;    ///< name of the directory below drive_c/users; may be empty
    QString home;    ///< of the user
    QString path;    ///< of the bottle
    QDateTime created;
    QStringList programs;  ///< names

    QVector<BackupEntry> entries;
    QVector<QByteArray> wineFiles;      ///< equal to Wine's own, and not in the backup
    QVector<QByteArray> standardLinks;  ///< a new bottle has a link there, to where its machine wants it
    QStringList leftOut;                ///< lead out of the bottle, or are no files

    /// Of all files together.
    qint64 bytes() const;
    /// The same without holes.
    qint64 writtenBytes() const;

    QByteArray toJson() const;
    /// Nothing, with a reason in English, when the text is no list that can be used. The reason is
    /// NewerFormat for a list of a later version of this program.
    static const char NewerFormat[];
    static std::optional<BackupList> parse(const QByteArray& text, QString* error);
};
