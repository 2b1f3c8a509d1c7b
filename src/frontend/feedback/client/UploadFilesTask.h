#pragma once

#include <QObject>
#include <QRunnable>
#include <QStringList>
#include <atomic>

#include "feedback/client/ReportAccess.h"
#include "net/HttpAnswer.h"

class QNetworkAccessManager;

/// How an upload ended; the values are those of the signals' first argument.
enum class UploadFilesTaskStatus { Success = 0, Failure = 1 };
Q_DECLARE_METATYPE(UploadFilesTaskStatus)

/// Uploads one picture, or several files and directories as one archive, in a thread of a pool: asks the
/// report service for an address and a key, and puts the bytes there. Lives in the thread that made it, where
/// its end is told: sigUploadFinished() comes exactly once, also when it was cancelled before it ran or while
/// it runs. The owner keeps it until then. Each wait for a server is limited, the archiver's is not.
class UploadFilesTask : public QObject, public QRunnable {
    Q_OBJECT
public:
    enum FileType { Image = 0, Logs = 1 };  ///< on the wire "image" and "attach"
    static constexpr int TimeOutMs = 60000;
    static constexpr qint64 MaximumBytes = 64 << 20;  ///< of a picture or an archive

    UploadFilesTask(const QStringList& filePaths, int fileType, const ReportAccess& access, int replyCount,
                    QObject* parent = nullptr);

    void setTimeOut(int ms) { m_timeOutMs = ms; }
    QString firstPath() const { return m_filePaths.value(0); }
    int replyCount() const { return m_replyCount; }

    void run() override;
    /// For a task that will not run.
    void endUnstarted();

public Q_SLOTS:
    /// Returns at once; from any thread.
    void onCancelUpload();
    void onUploadProgress(qint64 bytesSent, qint64 bytesTotal);

Q_SIGNALS:
    /// `fileKey` is an error text for logs when the status says failure. `replyCount` is the task's number.
    void sigUploadFinished(UploadFilesTaskStatus status, const QString& filePath, const QString& fileKey,
                           int replyCount);
    /// In bytes; comes from the pool's thread.
    void sigUploadProgress(const QString& filePath, qint64 currentByteSize, qint64 total);
    void cancelRequested();

private:
    bool isCancelled() const { return m_isCancelled; }
    QString uploadFile(QNetworkAccessManager* network);
    QString fetchAddress(QNetworkAccessManager* network);
    QString takeAddress(const HttpAnswer& answer);
    QString uploadImage(QNetworkAccessManager* network);
    QString uploadLogs(QNetworkAccessManager* network);
    QString makeArchive(const QString& archive);
    QString put(QNetworkAccessManager* network, const QByteArray& bytes);
    HttpAnswer send(QNetworkAccessManager* network, const QByteArray& verb, const QNetworkRequest& request,
                    const QByteArray& body, bool showsProgress);
    void deliver(const QString& errorText);

    const QStringList m_filePaths;
    const int m_fileType;
    const ReportAccess m_access;
    const int m_replyCount;
    int m_timeOutMs = TimeOutMs;
    std::atomic<bool> m_isCancelled = false;
    QString m_uploadUrl;
    QString m_fileKey;
};
