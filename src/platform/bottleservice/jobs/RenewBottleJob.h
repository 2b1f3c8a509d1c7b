#pragma once

#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"

/// Updates the files of a bottle that was copied from an older template to the build of its Wine that is
/// installed now. Does nothing when the bottle is up to date or was not made from a template. Answers with
/// success unless the bottle cannot be read; a failed update is logged.
class RenewBottleJob : public Job {
    Q_OBJECT

public:
    explicit RenewBottleJob(const JobBottle& bottle);
    void start() override;

private:
    void onRenewed(const QString& key, const QString& errorText);

    JobBottle m_bottle;
};
