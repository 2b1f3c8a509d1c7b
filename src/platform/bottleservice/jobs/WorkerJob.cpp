#include "bottleservice/jobs/WorkerJob.h"

#include "bottleservice/files/Background.h"

WorkerJob::WorkerJob(Work work, Reply reply) : Job(std::move(reply)), m_work(std::move(work)) {}

void WorkerJob::start() {
    Background::run(
        this, [work = m_work, cancelled = m_cancelled] { return work(*cancelled); },
        [this](const Conclusion& conclude) { finish(conclude()); });
}
