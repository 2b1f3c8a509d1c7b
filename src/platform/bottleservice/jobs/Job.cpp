#include "bottleservice/jobs/Job.h"

Job::Job(Reply reply, QObject* parent) : QObject(parent), m_reply(std::move(reply)) {}

Job::~Job() {
    if (!m_finished)
        answerOnce(Answer::failure(Answer::Fault::Failed,
                                   "The request was cancelled because the service is ending."));
}

void Job::finish(const Answer& answer) {
    if (m_finished)
        return;
    m_finished = true;
    answerOnce(answer);
    Q_EMIT finished();
}

void Job::answerOnce(const Answer& answer) {
    const Reply reply = std::exchange(m_reply, nullptr);
    if (reply)
        reply(answer);
}
