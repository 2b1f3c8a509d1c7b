#include "fenk/instance/SingleInstanceSender.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>

#include <QFile>
#include <cerrno>
#include <cstring>

#include "fenk/instance/SingleInstanceServer.h"
#include "fenk/system/OwnedFd.h"

namespace Fenk {
namespace SingleInstanceSender {
namespace {

/// Returns false after the deadline.
bool waitFor(int fd, short events, qint64 deadlineMs) {
    for (;;) {
        const qint64 left = deadlineMs - monotonicMs();
        if (left <= 0)
            return false;
        pollfd descriptor = {fd, events, 0};
        const int ready = ::poll(&descriptor, 1, int(left));
        if (ready > 0)
            return true;
        if (ready < 0 && errno != EINTR)
            return false;
    }
}

bool isOwnUser(int fd) {
    ucred peer = {};
    socklen_t size = sizeof(peer);
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::getuid();
}

/// Connects without blocking; retries while the backlog of the listener is full.
Outcome connectTo(const OwnedFd& socket, const QString& path, qint64 deadlineMs) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    if (name.size() >= int(sizeof(address.sun_path)))
        return Outcome::Refused;
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    while (::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        if (errno != EAGAIN && errno != EINTR)
            return Outcome::NobodyListens;
        if (monotonicMs() >= deadlineMs)
            return Outcome::TimedOut;
        ::poll(nullptr, 0, 5);
    }
    return isOwnUser(socket.get()) ? Outcome::Confirmed : Outcome::Refused;
}

Outcome writeAll(const OwnedFd& socket, const QByteArray& message, qint64 deadlineMs) {
    int written = 0;
    while (written < message.size()) {
        const ssize_t n = ::send(socket.get(), message.constData() + written,
                                 size_t(message.size() - written), MSG_NOSIGNAL);
        if (n > 0) {
            written += int(n);
        } else if (errno == EAGAIN) {
            if (!waitFor(socket.get(), POLLOUT, deadlineMs))
                return Outcome::TimedOut;
        } else if (errno != EINTR) {
            return Outcome::NobodyListens;
        }
    }
    return Outcome::Confirmed;
}

Outcome readAnswer(const OwnedFd& socket, qint64 deadlineMs) {
    for (;;) {
        char answer = 0;
        const ssize_t n = ::recv(socket.get(), &answer, 1, 0);
        if (n == 1)
            return answer == SingleInstanceServer::Confirmed ? Outcome::Confirmed : Outcome::Refused;
        if (n == 0 || (errno != EAGAIN && errno != EINTR))
            return Outcome::NobodyListens;
        if (errno == EAGAIN && !waitFor(socket.get(), POLLIN, deadlineMs))
            return Outcome::TimedOut;
    }
}

}  // namespace

qint64 monotonicMs() {
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

Outcome send(const QString& path, const QByteArray& message, qint64 deadlineMs) {
    const OwnedFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isValid())
        return Outcome::Refused;
    Outcome outcome = connectTo(socket, path, deadlineMs);
    if (outcome == Outcome::Confirmed)
        outcome = writeAll(socket, message, deadlineMs);
    if (outcome == Outcome::Confirmed)
        outcome = readAnswer(socket, deadlineMs);
    return outcome;
}

}  // namespace SingleInstanceSender
}  // namespace Fenk
