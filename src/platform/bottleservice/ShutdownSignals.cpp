#include "bottleservice/ShutdownSignals.h"

#include <fcntl.h>
#include <unistd.h>
#include <csignal>

namespace {

int writeEnd = -1;

void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(writeEnd, &byte, 1);
}

}  // namespace

ShutdownSignals::ShutdownSignals(QObject* parent) : QObject(parent) {
    if (pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    writeEnd = m_pipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        if (read(m_pipe[0], bytes, sizeof bytes) > 0)
            Q_EMIT received();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaction(number, &action, nullptr);
}

ShutdownSignals::~ShutdownSignals() {
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        signal(number, SIG_DFL);
    m_notifier.reset();
    for (const int fd : m_pipe) {
        if (fd >= 0)
            close(fd);
    }
}
