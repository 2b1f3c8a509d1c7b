#pragma once

#include <QFutureWatcher>

#include "bottleservice/jobs/Job.h"

/// A job whose long part runs in a worker thread, where it may only read; what it returns is then carried out
/// in the main thread and answers.
class WorkerJob : public Job {
    Q_OBJECT

public:
    using Conclusion = std::function<Answer()>;
    using Work = std::function<Conclusion()>;

    WorkerJob(Work work, Reply reply);
    void start() override;

private:
    Work m_work;
    QFutureWatcher<Conclusion> m_watcher;
};
