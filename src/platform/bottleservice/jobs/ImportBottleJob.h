#pragma once

#include <QSet>
#include <QThreadPool>
#include <memory>
#include <optional>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/backup/BackupList.h"
#include "bottleservice/backup/BackupReader.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/NewBottleTools.h"
#include "bottleservice/wine/Runners.h"

class StagedBottle;

/// Makes a bottle from a backup (BackupReader), on the runner that it had or, where that is missing, on
/// another one. No bottle is replaced: a name that is taken gets a number. The bottle is made in a hidden
/// directory, which is removed on failure and by the next service after a kill, and is renamed last. Answers
/// with JSON: {"ok", "bottle": its name, "runner", "otherWine": whether Wine's own files are another build's,
/// "programs": their number, "variables": names of variables of programs that are not taken over, "leftOut":
/// what the backup does not hold}.
class ImportBottleJob : public Job {
    Q_OBJECT

public:
    /// Without a name the bottle gets the one that it had.
    ImportBottleJob(const QString& file, const QString& name, NewBottleTools tools, Reply reply);

    void start() override;
    void cancel() override;

private:
    void onListed(const Reason& reason);
    std::optional<Runner> chooseRunner() const;
    void unpack(const Reason& reason);
    void complete(const Reason& reason);
    void place(const Reason& reason);
    QString freeName() const;
    QSet<QString> takenIds() const;
    void fail(const Reason& reason);
    /// The detail is for the log.
    Reason damaged(const QString& detail) const;

    /// What the worker threads fill.
    struct Work {
        explicit Work(const QString& path) : file(path), reader(path) {}
        const QString file;
        BackupReader reader;
        std::optional<BackupList> list;
        bool isOtherBuild = false;
        Reason fault;  ///< of the completion
    };

    QString m_name;
    NewBottleTools m_tools;
    std::shared_ptr<Work> m_work;
    StagedBottle* m_staged = nullptr;
};
