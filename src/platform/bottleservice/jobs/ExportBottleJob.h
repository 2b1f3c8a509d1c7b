#pragma once

#include <QPointer>
#include <QThreadPool>
#include <memory>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"

class BottleSurvey;
class WineCommand;

/// Writes a whole bottle into a file (BackupWriter). Fails with Busy while programs run in the bottle, and
/// ends none; waits until Wine has left the bottle. A program may be started meanwhile: the files that it
/// changes make the job fail, so that a backup is always of one moment. Answers with JSON: {"ok", "path",
/// "bytes": size of the file, "leftOut": what it does not hold}.
class ExportBottleJob : public Job {
    Q_OBJECT

public:
    struct Tools {
        QString dataDir;
        QThreadPool* worker;  ///< outlives the job
        std::shared_ptr<BackupFile::Progress> progress;
    };

    ExportBottleJob(const JobBottle& bottle, const QString& target, Tools tools, Reply reply);

    void start() override;
    void cancel() override;

private:
    void waitForWine(const Runner& runner);
    void survey();
    void write();
    void conclude(const Reason& reason);

    JobBottle m_bottle;
    QString m_target;
    QPointer<WineCommand> m_wait;  ///< for the wineserver
    Tools m_tools;
    QString m_note;  ///< file that names the unfinished backup, for the next start of the service
    QString m_templatePath;
    std::shared_ptr<BottleSurvey> m_survey;
};
