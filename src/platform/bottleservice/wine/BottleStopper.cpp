#include "bottleservice/wine/BottleStopper.h"

#include <csignal>

#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

namespace {

constexpr int ServerTimeoutMs = 1500;
constexpr int KillTimeoutMs = 2500;
constexpr int PollMs = 20;
constexpr int EmptyChecks = 3;  // during an exec a process has no environment

}  // namespace

BottleStopper::BottleStopper(const QString& prefix, const QString& wineserver, QObject* parent)
    : QObject(parent), m_prefix(prefix), m_wineserver(wineserver) {
    m_poll.setInterval(PollMs);
    connect(&m_poll, &QTimer::timeout, this, &BottleStopper::killRest);
}

void BottleStopper::start() {
    const auto startKilling = [this] {
        m_elapsed.start();
        m_poll.start();
    };
    if (m_wineserver.isEmpty()) {
        startKilling();
        return;
    }
    // Its exit code does not matter: it is an error when nothing ran.
    m_command =
        new WineCommand(m_wineserver, {"-k"}, WineEnvironment::forProcess({{"WINEPREFIX", m_prefix}}), this);
    connect(m_command, &WineCommand::finished, this, startKilling);
    m_command->start(ServerTimeoutMs);
}

void BottleStopper::killRest() {
    const std::vector<Processes::Entry> rest = m_processes.ofBottle(m_prefix, m_kind);
    const QVector<pid_t> launchers = m_launchers();
    for (const pid_t launcher : launchers)
        ::kill(launcher, SIGKILL);
    Processes::signal(rest, SIGKILL);
    const bool isEmpty = rest.empty() && launchers.isEmpty();
    m_emptyChecks = isEmpty ? m_emptyChecks + 1 : 0;
    if (m_emptyChecks < EmptyChecks && m_elapsed.elapsed() < KillTimeoutMs)
        return;
    m_poll.stop();
    Q_EMIT finished(isEmpty);
}
