#pragma once

#include <QJsonObject>
#include <QStringList>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "fenk/system/OwnedFd.h"
#include "storeserver/reports/UploadKeys.h"

namespace StoreServer {

/// Why there can be no reports. An English sentence.
class ReportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The directory that reports are kept in:
///     reports/<time>-<code>/{report.json, image-1.png ..., logs.tar.gz}
///     uploads/      what no report has named yet, under its key
///     scores.db     (ScoreBook)
///     own-key       of UploadKeys
/// Whoever hosts the store may delete reports at any time. For any thread of the one process that has it.
class ReportDirectory {
public:
    static constexpr qint64 BlockBytes = 4096;
    static constexpr qint64 YoungMs = 60 * 60 * 1000;        ///< an upload that is not removed for others
    static constexpr qint64 UnusedMs = 24 * 60 * 60 * 1000;  ///< an upload goes after this without a report

    /// Makes what is missing, and takes the directory for this process. `roomBytes` is for all files
    /// together. Throws ReportError.
    ReportDirectory(const QString& path, qint64 roomBytes);

    const QString& path() const { return m_path; }
    QString scoresFile() const { return m_path + "/scores.db"; }
    const QByteArray& ownKey() const { return m_ownKey; }

    /// Room for a file that is about to be written. It is given back with the object; what was written until
    /// then is counted as it is.
    class Room {
    public:
        Room(ReportDirectory& directory, qint64 bytes) : m_directory(directory), m_bytes(bytes) {}
        ~Room();
        Room(const Room&) = delete;
        Room& operator=(const Room&) = delete;

    private:
        ReportDirectory& m_directory;
        qint64 m_bytes;
    };
    /// Null if there is none. The oldest uploads without a report make room.
    std::unique_ptr<Room> reserve(qint64 bytes, qint64 nowMs);

    /// The file that an upload is written to; invalid if the key was used already, or is being used.
    Fenk::OwnedFd beginUpload(const QString& key);
    /// Keeps what was written. False, after logging, if it cannot be.
    bool keepUpload(const QString& key, const QString& suffix, qint64 bytes);
    void dropUpload(const QString& key);
    bool hasUpload(const QString& key) const { return !uploadOf(key).isEmpty(); }

    enum class Saved { Yes, Before, No };
    /// A report with its uploads, all or nothing; `names` are what they are called in it, without a suffix.
    /// Before if there is a report with this id. Logs a failure.
    Saved save(const QString& id, const QJsonObject& record, const QStringList& keys,
               const QStringList& names);

    static QString reportsOf(const QString& path) { return path + "/reports"; }

private:
    struct Upload {
        QString path;
        qint64 bytes;
        qint64 changedMs;
        bool isUsed;  ///< by a report, which has it under another name
    };

    QString uploadOf(const QString& key) const;
    QString incoming(const QString& key) const { return m_path + "/incoming/" + key; }
    QList<Upload> uploads() const;
    bool fill(const QString& directory, const QJsonObject& record, const QStringList& keys,
              const QStringList& names) const;
    void readOwnKey();
    void count();
    void removeUnused(qint64 nowMs);
    void makeRoom(qint64 bytes, qint64 nowMs);

    const QString m_path;
    const qint64 m_roomBytes;
    Fenk::OwnedFd m_lock;
    QByteArray m_ownKey;

    mutable std::mutex m_mutex;  // of all below, and of the names in the directories
    qint64 m_usedBytes = 0;
    qint64 m_reservedBytes = 0;
    qint64 m_countedMs = 0;
    qint64 m_sweptMs = 0;
};

}  // namespace StoreServer
