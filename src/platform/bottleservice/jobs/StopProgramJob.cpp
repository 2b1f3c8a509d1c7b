#include "bottleservice/jobs/StopProgramJob.h"

#include <csignal>

#include <QDebug>

#include "bottleservice/wine/LaunchRecords.h"

namespace {

constexpr int PollMs = 25;
constexpr int KillAfterMs = 1000;
constexpr int GiveUpAfterMs = 2000;
constexpr int EmptyChecks = 3;  // during an exec a process has no environment

void signalAll(const QVector<pid_t>& pids, int number) {
    for (const pid_t pid : pids)
        ::kill(pid, number);
}

}  // namespace

StopProgramJob::StopProgramJob(const BottleStore& store, const QString& name, const QString& programId,
                               Reply reply)
    : Job(std::move(reply)), m_store(store), m_name(name), m_programId(programId) {
    m_poll.setInterval(PollMs);
    connect(&m_poll, &QTimer::timeout, this, &StopProgramJob::step);
}

void StopProgramJob::start() {
    const QString missing = m_store.check(m_name);
    if (!missing.isEmpty()) {
        finish(Answer::failure(Answer::Fault::NoSuchBottle, missing));
        return;
    }
    QString error;
    const auto settings = m_store.load(m_name, &error);
    m_owners =
        std::make_unique<RunOwners>(m_store.pathOf(m_name), settings ? settings->programs() : QJsonObject());
    m_elapsed.start();
    m_poll.start();
    step();
}

// Reads the processes again each time: a pid may belong to another process by now, and the program may have
// started more of them.
void StopProgramJob::step() {
    const std::vector<Processes::Entry> rest =
        m_owners->processesOf(m_programId, m_processes.ofBottle(m_store.pathOf(m_name)));
    QVector<pid_t> launchers = LaunchRecord::launchers(m_store.runningDir(), m_name, m_programId);
    for (const LaunchRecord::Claim& claim : LaunchRecord::claims(m_store.runningDir())) {
        if (claim.bottle == m_name && m_owners->of(claim) == m_programId && !launchers.contains(claim.pid))
            launchers += claim.pid;
    }
    const bool isEmpty = rest.empty() && launchers.isEmpty();
    m_emptyChecks = isEmpty ? m_emptyChecks + 1 : 0;
    if (isEmpty) {
        if (m_emptyChecks < EmptyChecks)
            return;
        m_poll.stop();
        finish(Answer::of());
    } else if (m_elapsed.elapsed() > GiveUpAfterMs) {
        m_poll.stop();
        qWarning() << rest.size() << "processes of program" << m_programId << "could not be ended";
        finish(Answer::failure(Answer::Fault::Failed, Reason::ProgramsNotEnded));
    } else if (m_elapsed.elapsed() > KillAfterMs) {
        Processes::signal(rest, SIGKILL);
        signalAll(launchers, SIGKILL);
    } else if (!m_asked) {
        m_asked = true;
        Processes::signal(rest, SIGTERM);
        signalAll(launchers, SIGTERM);
    }
}
