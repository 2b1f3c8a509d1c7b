#include "bottleservice/jobs/JobQueue.h"

#include <QDebug>
#include <QTimer>

#include "bottleservice/bottles/BottleName.h"

namespace {

constexpr int RetryMs = 100;

}  // namespace

JobQueue::~JobQueue() {
    m_closed = true;
}

void JobQueue::add(const QString& bottle, std::unique_ptr<Job> job) {
    if (m_closed)
        return;
    std::shared_ptr<Line>& line = m_lines[bottle];
    if (!line)
        line = std::make_shared<Line>();
    line->jobs.push_back(std::move(job));
    if (line->jobs.size() == 1)
        startFirst(bottle);
}

void JobQueue::startFirst(const QString& bottle) {
    const std::shared_ptr<Line> line = m_lines.value(bottle);
    const BottleLock::Refusal refusal = m_locker ? m_locker(bottle, &line->lock) : BottleLock::Refusal();
    if (refusal.reason.isEmpty()) {
        line->sinceRefusal.invalidate();
    } else if (!line->sinceRefusal.isValid()) {
        line->sinceRefusal.start();
    }
    if (!refusal.reason.isEmpty() && refusal.mayEndSoon && !line->sinceRefusal.hasExpired(LimitMs)) {
        QTimer::singleShot(RetryMs, this, [this, bottle, line] {
            if (m_lines.value(bottle) == line)
                startFirst(bottle);
        });
        return;
    }
    Job* job = line->jobs.front().get();
    line->hasStarted = true;
    // Queued: the job is still on the stack when it emits finished().
    connect(
        job, &Job::finished, this, [this, bottle] { removeFirst(bottle); }, Qt::QueuedConnection);
    if (refusal.reason.isEmpty()) {
        job->start();
        return;
    }
    qWarning() << "a job was refused in" << BottleName::shown(bottle) << refusal.reason.text();
    job->refuse(Answer::failure(Answer::Fault::Busy, refusal.reason));
}

void JobQueue::removeFirst(const QString& bottle) {
    const std::shared_ptr<Line> line = m_lines.value(bottle);
    line->lock.release();
    line->hasStarted = false;
    line->jobs.pop_front();
    if (!line->jobs.empty()) {
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
    for (auto it = lines.begin(); it != lines.end(); ++it) {
        std::deque<std::unique_ptr<Job>>& jobs = it.value()->jobs;
        if (it.value()->hasStarted) {
            jobs.erase(jobs.begin() + 1, jobs.end());
            jobs.front()->cancel();
        } else {
            m_lines.remove(it.key());  // nothing of it has begun
            jobs.clear();
        }
    }
}
