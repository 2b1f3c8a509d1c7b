#pragma once

#include <QString>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/backup/BackupList.h"
#include "bottleservice/result/Reason.h"
#include "fenk/system/OwnedFd.h"

/// Writes a bottle into one file: a tar archive, compressed by zstd (docs/BACKUP.md). The content is written
/// to a hidden file beside the target, which takes the target's name at the end; until then an older file of
/// that name stays as it is. Blocks; for worker threads.
class BackupWriter {
public:
    /// The target is the absolute path of a regular file, or of none.
    explicit BackupWriter(const QString& target);
    /// Removes the hidden file if it has not become the target.
    ~BackupWriter();

    /// Where the hidden file lies.
    QString temporaryPath() const { return m_temporary; }
    static QString temporaryPathOf(const QString& target);
    /// Why nothing can be written there, empty if it can: a directory, a link, or no room for so many bytes
    /// however well they are compressed.
    static Reason check(const QString& target, qint64 bytes);

    /// Writes everything but the last rename. Files are read from the bottle, the registry of its template
    /// from `templatePath`, if that is not empty.
    Reason write(const BackupList& list, const QString& bottlePath, const QString& templatePath,
                 BackupFile::Progress* progress);
    /// Gives the file its name; after this the target holds the whole backup, also when the power fails.
    Reason place();

private:
    Reason addText(const QByteArray& name, const QByteArray& content);
    Reason addEntry(const BackupEntry& entry, const QString& bottlePath, BackupFile::Progress* progress);
    Reason addContent(int fd, const BackupEntry& entry, BackupFile::Progress* progress);
    Reason begin(const QByteArray& name, unsigned type, qint64 size, const BackupEntry& entry);
    Reason writeFault() const;

    QString m_target;
    QString m_temporary;
    Fenk::OwnedFd m_file;
    BackupFile::Handle m_archive;
    QByteArray m_checksums;
    QByteArray m_block;
};
