#include "storeserver/server/ServerThread.h"

#include <netdb.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <QtGlobal>
#include <algorithm>
#include <array>
#include <system_error>
#include <tuple>

namespace StoreServer {

namespace {

constexpr int SweepMs = 1000;
constexpr int EventsAtOnce = 64;
constexpr int AcceptedAtOnce = 16;
constexpr std::chrono::minutes WarningPause{1};
constexpr size_t ReceiveBytes = 16 * 1024;
constexpr size_t NetworkShare = 4;  // so many have room for as many connections as they like

Fenk::OwnedFd owned(int fd, const char* what) {
    if (fd < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return Fenk::OwnedFd(fd);
}

bool change(const Fenk::OwnedFd& epoll, int operation, int fd, unsigned events) {
    epoll_event event = {};
    event.events = events;
    event.data.fd = fd;
    return ::epoll_ctl(epoll.get(), operation, fd, &event) == 0;
}

std::string textOf(const sockaddr_storage& address, socklen_t length) {
    std::array<char, NI_MAXHOST> text = {};
    const int error = ::getnameinfo(reinterpret_cast<const sockaddr*>(&address), length, text.data(),
                                    text.size(), nullptr, 0, NI_NUMERICHOST);
    return error == 0 ? text.data() : std::string();
}

bool isTransient(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

}  // namespace

ServerThread::ServerThread(int listener, HttpExchange::Handler handler, const BodyTaker& taker,
                           const ServerLimits& limits, ServerActivity& activity)
    : m_listener(listener),
      m_exchange(std::move(handler), taker),
      m_limits(limits),
      m_activity(activity),
      m_epoll(owned(::epoll_create1(EPOLL_CLOEXEC), "epoll")),
      m_wake(owned(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd")) {
    if (!listen(true) || !change(m_epoll, EPOLL_CTL_ADD, m_wake.get(), EPOLLIN))
        throw std::system_error(errno, std::generic_category(), "epoll");
    m_thread = std::thread([this] { run(); });
}

ServerThread::~ServerThread() {
    stop();
    m_thread.join();
}

void ServerThread::stop() {
    m_isStopped = true;
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_wake.get(), &one, sizeof one);
}

void ServerThread::run() {
    std::array<epoll_event, EventsAtOnce> events;
    while (!m_isClosing || !m_connections.empty()) {
        const int count = ::epoll_wait(m_epoll.get(), events.data(), int(events.size()), waitMs());
        if (m_isStopped && !m_isClosing)
            beginClosing();
        bool isCalled = false;
        for (int index = 0; index < count; ++index) {
            const epoll_event& event = events[size_t(index)];
            if (event.data.fd == m_listener)
                isCalled = true;
            else if (event.data.fd != m_wake.get())
                handle(event.data.fd, event.events);
        }
        // After the rest, whose events would be taken for those of a new connection with the same descriptor.
        if (isCalled)
            accept();
        if (Clock::now() - m_lastSweep >= std::chrono::milliseconds(SweepMs))
            endLateOnes();
    }
}

int ServerThread::waitMs() const {
    return m_connections.empty() && m_isListening ? -1 : SweepMs;
}

/// Some at once, as a busy thread seldom comes here; the rest is left to threads that have less to do.
void ServerThread::accept() {
    for (int count = 0; count < AcceptedAtOnce && !m_isClosing; ++count) {
        sockaddr_storage peer = {};
        socklen_t length = sizeof peer;
        const int fd =
            ::accept4(m_listener, reinterpret_cast<sockaddr*>(&peer), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd >= 0)
            add(fd, textOf(peer, length));
        else if (errno == ECONNABORTED)
            continue;
        else if (isTransient(errno))
            return;
        else {
            onNotAccepted(errno);
            return;
        }
    }
}

/// The system has no descriptor or memory for it. Where there is nothing to end, the connection waits until
/// the next sweep, as its event would come again at once.
void ServerThread::onNotAccepted(int error) {
    const Clock::time_point now = Clock::now();
    if (now >= m_nextWarning) {
        qWarning("a connection cannot be accepted: %s", qPrintable(qt_error_string(error)));
        m_nextWarning = now + WarningPause;
    }
    if (m_connections.empty())
        listen(false);
    else
        makeRoom();
}

bool ServerThread::listen(bool isListening) {
    m_isListening = isListening;
    if (!isListening)
        return ::epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, m_listener, nullptr) == 0;
    // Of the threads that wait only one is woken for a connection; a busy one leaves it to the others.
    m_isListening = change(m_epoll, EPOLL_CTL_ADD, m_listener, EPOLLIN | EPOLLEXCLUSIVE);
    return m_isListening;
}

void ServerThread::add(int fd, const std::string& peer) {
    if (int(m_connections.size()) >= m_limits.connections)
        makeRoom();
    m_connections.try_emplace(fd, fd, m_exchange, peer);
    if (!change(m_epoll, EPOLL_CTL_ADD, fd, EPOLLIN | EPOLLRDHUP))
        m_connections.erase(fd);
}

/// For a newcomer one goes that is between requests before one that is in the middle, and of these the one
/// that has moved nothing for the longest time. A network with too many connections makes room itself.
void ServerThread::makeRoom() {
    const std::string crowded = crowdedNetwork();
    const auto rank = [&crowded](const Connection& connection) {
        const bool isBetween =
            connection.phase == Conversation::Phase::Idle || connection.phase == Conversation::Phase::Reading;
        return std::tuple(crowded.empty() || connection.network == crowded ? 0 : 1, isBetween ? 0 : 1,
                          connection.moved);
    };
    const auto first = std::min_element(
        m_connections.begin(), m_connections.end(),
        [&rank](const auto& left, const auto& right) { return rank(left.second) < rank(right.second); });
    if (first != m_connections.end())
        end(first);
}

/// Empty if none has more than its share.
std::string ServerThread::crowdedNetwork() const {
    std::unordered_map<std::string, size_t> counts;
    std::string crowded;
    size_t most = m_connections.size() / NetworkShare;
    for (const auto& [fd, connection] : m_connections) {
        const size_t count = ++counts[connection.network];
        if (count > most) {
            most = count;
            crowded = connection.network;
        }
    }
    return crowded;
}

ServerThread::Connections::iterator ServerThread::end(Connections::iterator place) {
    m_held -= place->second.held;
    return m_connections.erase(place);
}

void ServerThread::countHeld(Connection& connection) {
    m_held -= connection.held;
    connection.held = connection.conversation.held();
    m_held += connection.held;
}

void ServerThread::endLongestHolder() {
    auto longest = m_connections.end();
    for (auto place = m_connections.begin(); place != m_connections.end(); ++place) {
        if (place->second.held > 0 &&
            (longest == m_connections.end() || place->second.moved < longest->second.moved))
            longest = place;
    }
    if (longest != m_connections.end())
        end(longest);
}

void ServerThread::handle(int fd, unsigned events) {
    const auto place = m_connections.find(fd);
    if (place == m_connections.end())
        return;  // it was ended for another in this round
    Connection& connection = place->second;
    bool isAlive = (events & EPOLLERR) == 0;
    if (isAlive && connection.phase != Conversation::Phase::Writing)
        isAlive = receive(connection);
    if (isAlive)
        isAlive = send(connection);
    countHeld(connection);
    if (isAlive && connection.conversation.phase() != Conversation::Phase::Over)
        watch(connection);
    else
        end(place);
    while (m_held > m_limits.heldBytes)
        endLongestHolder();
}

/// False if the connection is broken.
bool ServerThread::receive(Connection& connection) {
    std::array<char, ReceiveBytes> bytes;
    const ssize_t count = ::recv(connection.fd.get(), bytes.data(), bytes.size(), 0);
    if (count < 0)
        return isTransient(errno);
    if (count == 0) {
        connection.conversation.finish();
        return true;
    }
    m_activity.touch();
    connection.moved = Clock::now();
    connection.conversation.receive({bytes.data(), size_t(count)});
    return true;
}

/// Once: a client that has sent many requests in a row does not keep the others waiting.
bool ServerThread::send(Connection& connection) {
    const std::string_view output = connection.conversation.output();
    if (output.empty())
        return true;
    const ssize_t count = ::send(connection.fd.get(), output.data(), output.size(), MSG_NOSIGNAL);
    if (count < 0)
        return isTransient(errno);
    connection.moved = Clock::now();
    if (size_t(count) == output.size())
        connection.since = connection.moved;  // the next answer has its own time
    connection.conversation.sent(size_t(count));
    return true;
}

void ServerThread::watch(Connection& connection) {
    const Conversation::Phase phase = connection.conversation.phase();
    if (phase != connection.phase) {
        connection.phase = phase;
        connection.since = Clock::now();
    }
    const bool isWriting = phase == Conversation::Phase::Writing;
    if (isWriting != connection.isWatchedForWriting) {
        connection.isWatchedForWriting = isWriting;
        change(m_epoll, EPOLL_CTL_MOD, connection.fd.get(), isWriting ? EPOLLOUT : EPOLLIN | EPOLLRDHUP);
    }
}

ServerThread::Clock::duration ServerThread::limitOf(Conversation::Phase phase) const {
    switch (phase) {
        case Conversation::Phase::Idle:
            return m_limits.idle;
        case Conversation::Phase::Reading:
            return m_limits.reading;
        case Conversation::Phase::Receiving:
            return m_limits.receiving;
        case Conversation::Phase::Writing:
            return m_limits.writing;
        case Conversation::Phase::Over:
            break;
    }
    return Clock::duration::zero();
}

void ServerThread::endLateOnes() {
    const Clock::time_point now = Clock::now();
    m_lastSweep = now;
    if (!m_isListening && !m_isClosing)
        listen(true);
    const bool isAllOver = m_isClosing && now - m_closingSince > m_limits.closing;
    for (auto place = m_connections.begin(); place != m_connections.end();) {
        const Connection& connection = place->second;
        const bool isLate = isAllOver || now - connection.since > limitOf(connection.phase);
        place = isLate ? end(place) : std::next(place);
    }
}

void ServerThread::beginClosing() {
    m_isClosing = true;
    m_closingSince = Clock::now();
    if (m_isListening)
        listen(false);
    ::epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, m_wake.get(), nullptr);
    for (auto place = m_connections.begin(); place != m_connections.end();) {
        place->second.conversation.finish();
        const bool isOver = place->second.conversation.phase() == Conversation::Phase::Over;
        place = isOver ? end(place) : std::next(place);
    }
}

}  // namespace StoreServer
