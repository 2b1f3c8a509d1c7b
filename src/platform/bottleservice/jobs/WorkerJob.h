#pragma once

#include <atomic>
#include <memory>

#include "bottleservice/jobs/Job.h"

/// A job whose long part runs in a worker thread, where it may only read. The function that it returns then
/// runs in the main thread and makes the answer.
class WorkerJob : public Job {
    Q_OBJECT

public:
    using Conclusion = std::function<Answer()>;
    using Work = std::function<Conclusion(const std::atomic_bool& cancelled)>;

    WorkerJob(Work work, Reply reply);
    void start() override;
    void cancel() override { *m_cancelled = true; }

private:
    Work m_work;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
