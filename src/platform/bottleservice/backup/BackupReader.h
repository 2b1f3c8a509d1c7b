#pragma once

#include <QString>
#include <optional>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/backup/BackupList.h"
#include "bottleservice/result/Reason.h"

/// Reads a backup (docs/BACKUP.md). Nothing in it is trusted: after the list, which is checked as a whole,
/// the archive must have exactly the entries that the list announces, in its order and of its sizes, and the
/// checksums at its end must be those of what was read. Blocks; for worker threads.
class BackupReader {
public:
    explicit BackupReader(const QString& path);

    /// The list. Call once, first.
    std::optional<BackupList> readList(Reason* failure);

    /// Unpacks the rest into an existing empty directory: the bottle's files, and the registry of the
    /// template into `templateDirectory`, which exists, too. On failure what was unpacked before stays.
    Reason unpack(const BackupList& list, const QString& directory, const QString& templateDirectory,
                  BackupFile::Progress* progress);

private:
    Reason open();
    Reason broken(const QString& detail) const;
    /// The header of the next entry; null at the end, and with a failure.
    archive_entry* next(Reason* failure);
    /// The content of an entry, which has at most so many bytes.
    std::optional<QByteArray> readText(archive_entry* entry, qint64 maximum, Reason* failure);
    Reason unpackEntry(archive_entry* header, const BackupEntry& entry, const QByteArray& path,
                       BackupFile::Progress* progress);
    Reason unpackFile(const BackupEntry& entry, const QByteArray& path, BackupFile::Progress* progress);

    QString m_path;
    BackupFile::Handle m_archive;
    QByteArray m_checksums;
};
