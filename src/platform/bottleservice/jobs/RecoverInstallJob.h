#pragma once

#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"

/// Handles a backup that an interrupted installation has left in a bottle: restores the bottle, or, when the
/// installation had been completed, only removes the backup. Answers with success in both cases; a bottle
/// that could not be restored is logged and keeps its backup for the next try.
class RecoverInstallJob : public Job {
    Q_OBJECT

public:
    /// The key of bottle.yml with the id of the last installation that was completed.
    static const char LastInstall[];

    explicit RecoverInstallJob(const JobBottle& bottle);
    void start() override;

private:
    void restore();
    void removeFiles(const QString& errorText);

    JobBottle m_bottle;
};
