#include "core/UnixSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDebug>
#include <cerrno>
#include <csignal>

namespace {

constexpr int EndingSignals[] = {SIGQUIT, SIGINT, SIGTERM, SIGHUP};
volatile int writeEnd = -1;

void onSignal(int number) {
    const int savedErrno = errno;
    const char byte = char(number);
    // A full pipe means that an end is asked for already.
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
    // Should the loop be stuck, the same signal ends the process when it comes again.
    ::signal(number, SIG_DFL);
    errno = savedErrno;
}

}  // namespace

UnixSignals::UnixSignals(QObject* parent) : QObject(parent) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning() << "no pipe for signals, they end the process at once:" << qt_error_string(errno);
        return;
    }
    m_readEnd = ends[0];
    writeEnd = ends[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_readEnd, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UnixSignals::onReadable);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    for (int number : EndingSignals)
        sigaddset(&action.sa_mask, number);
    for (int number : EndingSignals)
        sigaction(number, &action, nullptr);
}

UnixSignals::~UnixSignals() {
    if (m_readEnd < 0)
        return;
    for (int number : EndingSignals)
        ::signal(number, SIG_DFL);
    m_notifier.reset();
    ::close(m_readEnd);
    ::close(writeEnd);
    writeEnd = -1;
}

void UnixSignals::onReadable() {
    char bytes[16];
    const ssize_t got = ::read(m_readEnd, bytes, sizeof bytes);
    if (got <= 0)
        return;
    m_endRequested = true;
    qInfo() << "ending on signal" << int(bytes[0]);
    QCoreApplication::quit();
}
