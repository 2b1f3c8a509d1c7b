#include "bottleservice/jobs/JobQueue.h"

JobQueue::~JobQueue() {
    m_closed = true;
}

void JobQueue::add(const QString& bottle, std::unique_ptr<Job> job) {
    if (m_closed)
        return;
    std::shared_ptr<Line>& line = m_lines[bottle];
    if (!line)
        line = std::make_shared<Line>();
    line->push_back(std::move(job));
    if (line->size() == 1)
        startFirst(bottle);
}

void JobQueue::startFirst(const QString& bottle) {
    Job* job = m_lines.value(bottle)->front().get();
    // Queued: the job is still on the stack when it emits finished().
    connect(
        job, &Job::finished, this, [this, bottle] { removeFirst(bottle); }, Qt::QueuedConnection);
    job->start();
}

void JobQueue::removeFirst(const QString& bottle) {
    const std::shared_ptr<Line> line = m_lines.value(bottle);
    line->pop_front();
    if (!line->empty()) {
        startFirst(bottle);
        return;
    }
    m_lines.remove(bottle);
    if (m_lines.isEmpty())
        Q_EMIT idle();
}

void JobQueue::close() {
    m_closed = true;
    const auto lines = m_lines;
    for (const std::shared_ptr<Line>& line : lines) {
        line->erase(line->begin() + 1, line->end());
        line->front()->cancel();
    }
}
