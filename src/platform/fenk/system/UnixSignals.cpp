#include "fenk/system/UnixSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDebug>
#include <cerrno>
#include <csignal>

namespace Fenk {

namespace {

volatile int pipeEnd = -1;
volatile bool isRepeatFatal = false;

void onSignal(int number) {
    const int savedErrno = errno;
    const char byte = char(number);
    // A full pipe holds enough signals already.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnd, &byte, 1);
    if (isRepeatFatal)
        ::signal(number, SIG_DFL);
    errno = savedErrno;
}

}  // namespace

UnixSignals::UnixSignals(std::initializer_list<int> numbers, Repeated repeated, QObject* parent)
    : QObject(parent), m_numbers(numbers) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning() << "no pipe for signals, they end the process at once:" << qt_error_string(errno);
        return;
    }
    m_readEnd.reset(ends[0]);
    m_writeEnd.reset(ends[1]);
    pipeEnd = m_writeEnd.get();
    isRepeatFatal = repeated == Repeated::Fatal;
    m_notifier = std::make_unique<QSocketNotifier>(m_readEnd.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &UnixSignals::onReadable);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = isRepeatFatal ? 0 : SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : m_numbers)
        sigaddset(&action.sa_mask, number);
    for (const int number : m_numbers)
        sigaction(number, &action, nullptr);
}

UnixSignals::~UnixSignals() {
    if (!m_notifier)
        return;
    for (const int number : m_numbers)
        ::signal(number, SIG_DFL);
    m_notifier.reset();
    pipeEnd = -1;
}

void UnixSignals::onReadable() {
    char bytes[16];
    const ssize_t got = ::read(m_readEnd.get(), bytes, sizeof bytes);
    if (got <= 0)
        return;
    m_lastReceived = bytes[0];
    Q_EMIT received();
}

}  // namespace Fenk
