#pragma once

#include <QHash>
#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <memory>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class Job;
struct NewBottleTools;

/// The requests to back up and restore whole bottles, and to make one of a portable program. Files are
/// written and read one after the other, in one thread. Each copy is known by the path of its file. Owned by
/// BottleService; lives in the main thread.
class BackupRequests : public QObject {
    Q_OBJECT

public:
    explicit BackupRequests(BottleEngine* engine, QObject* parent = nullptr);
    ~BackupRequests() override;

    /// Removes what a killed service has left of backups.
    void recover();

    /// See ExportBottleJob; answers at the end. A deletion of the bottle waits for it.
    void exportBottle(const QString& bottle, const QString& file, const Reply& reply);
    /// See ImportBottleJob; answers at the end.
    void importBottle(const QString& file, const QString& name, const Reply& reply);
    /// See PortableBottleJob; answers at the end. The copy is known by the path of the folder or archive.
    void importPortable(const QString& source, const Reply& reply);
    /// What a backup holds, without unpacking it: {"name", "runner", "created", "programs", "bytes", "files",
    /// "leftOut"}.
    void describeBackup(const QString& file, const Reply& reply);
    /// Cancels the copy to or from that file, if there is one. Answers at once.
    void cancelBottleCopy(const QString& file, const Reply& reply);

    bool isIdle() const { return m_copies.isEmpty() && m_descriptions == 0; }

Q_SIGNALS:
    /// Bytes of the bottle's files, some times a second; the total is 0 as long as it is not known.
    void progress(const QString& file, qint64 done, qint64 total);
    /// A bottle was made from a backup or of a portable program.
    void bottleMade(const QString& bottle);

private:
    struct Copy {
        std::shared_ptr<BackupFile::Progress> progress;
        std::function<void()> cancel;
        qint64 told = -1;
    };

    NewBottleTools toolsOfNewBottle(const std::shared_ptr<BackupFile::Progress>& progress);
    /// Replies and returns true when there is a copy with that file.
    bool refuse(const QString& file, const Reply& reply) const;
    /// Ends the copy, then replies.
    Reply ending(const QString& file, const Reply& reply);
    /// Replies, then tells of the bottle in the answer.
    Reply announcing(const Reply& reply);
    void begin(const QString& file, const std::shared_ptr<BackupFile::Progress>& progress,
               const QString& queue, std::unique_ptr<Job> job);
    void end(const QString& file);
    void tellProgress();

    BottleEngine* m_engine;
    QHash<QString, Copy> m_copies;  ///< by path of the file
    QTimer m_timer;
    int m_descriptions = 0;
    QThreadPool m_worker;
};
