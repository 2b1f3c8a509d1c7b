#pragma once

#include <QHash>
#include <QJsonObject>
#include <QStringList>
#include <atomic>

#include "fenk/system/OwnedFd.h"
#include "storeserver/reports/ReportError.h"
#include "storeserver/reports/ReportRoom.h"

namespace StoreServer {

/// The directory that reports are kept in:
///     reports/<time>-<code>/{report.json, image-1.png ..., logs.tar.gz}
///     uploads/      what no report has named yet, or only just, under its key
///     incoming/     uploads that are being written
///     scores.db     (ScoreBook)
///     own-key       of UploadKeys
/// Whoever hosts the store may delete reports at any time. For any thread of the one process that has it.
class ReportDirectory {
public:
    static constexpr qint64 UnusedMs = 24 * 60 * 60 * 1000;  ///< an upload goes after this without a report
    static constexpr qint64 UsedMs = 60 * 60 * 1000;  ///< and so does its first name after this with one
    static constexpr qint64 SameMs = UnusedMs;        ///< so long what is sent again is the same report

    /// Makes what is missing, and takes the directory for this process. `roomBytes` is for all files
    /// together. Throws ReportError.
    ReportDirectory(const QString& path, qint64 roomBytes, qint64 nowMs);

    const QString& path() const { return m_path; }
    QString scoresFile() const { return m_path + "/scores.db"; }
    const QByteArray& ownKey() const { return m_ownKey; }
    ReportRoom& room() { return m_room; }

    /// The file that an upload is written to, or an error of the system: EEXIST if the key was used already,
    /// or is being used.
    struct Incoming {
        Fenk::OwnedFd file;
        int error = 0;
    };
    Incoming beginUpload(const QString& key);
    /// Keeps what was written. An error of the system, logged, or 0.
    int keepUpload(const QString& key, const QString& suffix, qint64 bytes, ReportRoom::Part& part);
    void dropUpload(const QString& key);
    bool hasUpload(const QString& key) const { return !uploadOf(key).isEmpty(); }

    struct Report {
        QByteArray code;  ///< hexadecimal digits, the same for what is the same report
        QJsonObject record;
        QStringList keys;   ///< of its uploads
        QStringList names;  ///< what they are called in it, without a suffix
    };
    /// Whether the same report has come lately and was not deleted.
    bool hasReport(const QByteArray& code, qint64 nowMs) const;
    /// A report with its uploads, all or nothing. `owner` as for room(). An error of the system, logged, or
    /// 0.
    int save(const Report& report, const std::string& owner, qint64 nowMs);

    /// Removes uploads that are over and counts what there is. May take seconds; for one thread at a time.
    void tidy(qint64 nowMs);

    static QString reportsOf(const QString& path) { return path + "/reports"; }

private:
    QString uploadOf(const QString& key) const;
    QString incoming(const QString& key) const { return m_path + "/incoming/" + key; }
    int fill(const QString& directory, const QStringList& files, const QStringList& uploads,
             const QByteArray& content, qint64* bytes) const;
    int makeDirectories() const;
    void removeLeftOvers();
    void sweep(qint64 nowMs);
    void readReports(qint64 nowMs);

    const QString m_path;
    Fenk::OwnedFd m_lock;
    QByteArray m_ownKey;
    ReportRoom m_room;
    std::atomic<unsigned> m_fresh = 0;  // reports that were begun

    mutable std::mutex m_mutex;           // of what is below
    QHash<QByteArray, QString> m_recent;  // ids of reports by their code
};

}  // namespace StoreServer
