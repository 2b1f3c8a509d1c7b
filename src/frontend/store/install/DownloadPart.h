#pragma once

#include <QFile>
#include <QUrl>
#include <memory>

/// What has come of a download: a hidden file in the user's directory. Its name tells a checksum of the
/// address and what tells whether the server still has the same file, so that a later download of the
/// address, also one of a later process, can go on with it. Others with the same address get a file of their
/// own meanwhile. The functions read and write the disk; one thread at a time.
class DownloadPart {
public:
    static constexpr int DaysKept = 7;

    /// What was kept for this address, or a new file. Makes the directory, and removes parts in it that are
    /// older than DaysKept. Null with a reason, for logs, if nothing can be written there.
    static std::shared_ptr<DownloadPart> open(const QString& directory, const QUrl& url, QString* reason);
    /// As settle().
    ~DownloadPart();

    QFile* file() const { return m_file.get(); }
    QString path() const { return m_path; }
    /// For the header If-Range; empty when the server told none.
    QByteArray validator() const { return m_validator; }
    void setValidator(const QByteArray& validator);
    bool canBeResumed() const { return m_file && !m_validator.isEmpty() && m_file->size() > 0; }
    /// Empties it, for another file of the server.
    void restart();
    /// The end: keeps the file if it can be gone on with, and else removes it.
    void settle();
    void discard();
    /// The file is whole: it gets this name, if that is free.
    bool moveTo(const QString& path);

private:
    DownloadPart() = default;
    bool openKept(const QString& directory, const QString& prefix);
    bool openNew(const QString& directory, QString* reason);

    std::unique_ptr<QFile> m_file;
    QString m_path;
    QString m_keptName;  ///< path without the validator
    QByteArray m_validator;
};
