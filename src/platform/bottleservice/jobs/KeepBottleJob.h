#pragma once

#include <atomic>
#include <memory>

#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/JobBottle.h"

/// Makes a bottle whose package is gone an ordinary one. Its links to files of the package become copies of
/// them, or go where nothing is left to copy, so that a later version of the package does not come into it.
/// Refused while the package is installed. When it fails or is cancelled, the bottle stays the package's, and
/// the next one goes on.
class KeepBottleJob : public Job {
    Q_OBJECT

public:
    KeepBottleJob(const JobBottle& bottle, Reply reply) : Job(std::move(reply)), m_bottle(bottle) {}

    void start() override;
    void cancel() override { *m_cancelled = true; }

private:
    JobBottle m_bottle;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
