#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QThreadPool>
#include <memory>
#include <optional>

#include "feedback/client/UploadFilesTask.h"
#include "fenk/system/Singleton.h"

/// Uploads pictures, several at a time, and archives of logs, one at a time. Owns the tasks until they have
/// ended; what is under way when the program quits is cancelled, and waited for during a limited time. GUI
/// thread.
class UploadFilesManager : public QObject, public Fenk::Singleton<UploadFilesManager> {
    Q_OBJECT
    friend class Fenk::Singleton<UploadFilesManager>;

public:
    ~UploadFilesManager();

    /// `fileType` is one of UploadFilesTask::FileType. Returns the number that comes with the task's end.
    int addTask(const QStringList& filePaths, int fileType);
    void cancel(int replyCount);
    /// Each task ends as failed, also those that have not begun.
    void cancelAll();

    const QThreadPool& imagePool() const { return *m_imagePool; }
    const QThreadPool& logPool() const { return *m_logPool; }
    /// First paths of the tasks under way.
    QStringList pathsUnderWay() const;

Q_SIGNALS:
    void sigUploadFinished(UploadFilesTaskStatus status, const QString& filePath, const QString& fileKey,
                           int replyCount);
    void sigUploadProgress(const QString& filePath, qint64 currentByteSize, qint64 total);
    void sigCancelUpload();

private:
    UploadFilesManager();
    void endIfQueued(UploadFilesTask* task);
    void onFinished(UploadFilesTask* task);
    bool endAll();

    std::unique_ptr<QThreadPool> m_imagePool;
    std::unique_ptr<QThreadPool> m_logPool;
    QList<UploadFilesTask*> m_tasks;
    int m_replyCount = 0;
    std::optional<QDeadlineTimer> m_end;  ///< of the waiting, once the program quits
};
