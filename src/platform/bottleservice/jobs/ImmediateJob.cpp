#include "bottleservice/jobs/ImmediateJob.h"

ImmediateJob::ImmediateJob(std::function<Answer()> work, Reply reply)
    : Job(std::move(reply)), m_work(std::move(work)) {}

void ImmediateJob::start() {
    finish(m_work());
}
