#include "bottleservice/jobs/WorkerJob.h"

#include <QtConcurrent/QtConcurrent>

WorkerJob::WorkerJob(Work work, Reply reply) : Job(std::move(reply)), m_work(std::move(work)) {
    connect(&m_watcher, &QFutureWatcher<Conclusion>::finished, this,
            [this] { finish(m_watcher.result()()); });
}

void WorkerJob::start() {
    m_watcher.setFuture(
        QtConcurrent::run([work = m_work, cancelled = m_cancelled] { return work(*cancelled); }));
}
