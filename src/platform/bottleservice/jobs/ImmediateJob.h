#pragma once

#include "bottleservice/jobs/Job.h"

/// A job that is done when start() returns: it runs a function and answers with its result.
class ImmediateJob : public Job {
    Q_OBJECT

public:
    ImmediateJob(std::function<Answer()> work, Reply reply);
    void start() override;

private:
    std::function<Answer()> m_work;
};
