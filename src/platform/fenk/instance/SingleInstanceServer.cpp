#include "fenk/instance/SingleInstanceServer.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QDebug>
#include <QFile>
#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <cstring>

#include "fenk/instance/SingleInstanceMessage.h"

namespace Fenk {

struct SingleInstanceServer::Peer {
    OwnedFd socket;
    qint64 pid = 0;
    QByteArray bytes;
    QTimer idle;
    // Destroyed before the socket that it watches.
    std::unique_ptr<QSocketNotifier> notifier;
};

SingleInstanceServer::SingleInstanceServer(QObject* parent) : QObject(parent) {}

SingleInstanceServer::~SingleInstanceServer() = default;

bool SingleInstanceServer::listen(const QString& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    if (name.size() >= int(sizeof(address.sun_path)))
        return false;
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));

    OwnedFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isValid())
        return false;
    ::unlink(name.constData());
    if (::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        ::chmod(name.constData(), 0600) != 0 || ::listen(socket.get(), MaxPeers) != 0)
        return false;
    m_socket = std::move(socket);
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &SingleInstanceServer::acceptPeers);
    return true;
}

void SingleInstanceServer::acceptPeers() {
    while (m_peers.size() < MaxPeers) {
        OwnedFd socket(::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (socket.isValid()) {
            addPeer(std::move(socket));
        } else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            qWarning() << "single instance: cannot accept a peer:" << qt_error_string(errno);
            m_notifier->setEnabled(false);
            QTimer::singleShot(PauseMs, this, [this] { m_notifier->setEnabled(true); });
            return;
        } else if (errno != EINTR && errno != ECONNABORTED) {
            return;
        }
    }
    m_notifier->setEnabled(false);  // until a peer disconnects
}

void SingleInstanceServer::addPeer(OwnedFd socket) {
    ucred credentials = {};
    socklen_t size = sizeof(credentials);
    if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0 ||
        credentials.uid != ::getuid()) {
        qWarning() << "single instance: refused a peer of user" << credentials.uid;
        return;
    }
    const int fd = socket.get();
    auto peer = std::make_unique<Peer>();
    peer->socket = std::move(socket);
    peer->pid = credentials.pid;
    peer->notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    connect(peer->notifier.get(), &QSocketNotifier::activated, this, [this, fd] { readPeer(fd); });
    peer->idle.setSingleShot(true);
    connect(&peer->idle, &QTimer::timeout, this, [this, fd] {
        qWarning() << "single instance: a peer sent nothing whole, dropped:" << m_peers.at(fd)->pid;
        replyAndDisconnect(fd, Refused);
    });
    peer->idle.start(IdleMs);
    m_peers.emplace(fd, std::move(peer));
    readPeer(fd);
}

void SingleInstanceServer::readPeer(int fd) {
    const auto found = m_peers.find(fd);
    if (found == m_peers.end())
        return;
    Peer& peer = *found->second;
    bool ended = false;
    for (char buffer[16384];;) {
        const ssize_t n = ::recv(fd, buffer, sizeof(buffer), 0);
        if (n > 0)
            peer.bytes.append(buffer, int(n));
        else if (n == 0 || errno != EINTR)
            ended = n == 0 || errno != EAGAIN;
        else
            continue;
        if (n <= 0 || quint32(peer.bytes.size()) > SingleInstanceMessage::MaxBytes + 64)
            break;
    }
    const SingleInstanceMessage::Parsed parsed = SingleInstanceMessage::parse(peer.bytes);
    const qint64 pid = peer.pid;
    switch (parsed.state) {
        case SingleInstanceMessage::State::Incomplete:
            if (ended)
                replyAndDisconnect(fd, Refused);
            return;
        case SingleInstanceMessage::State::Invalid:
            qWarning() << "single instance: a peer sent something else than arguments, dropped:" << pid;
            replyAndDisconnect(fd, Refused);
            return;
        case SingleInstanceMessage::State::Value:
            replyAndDisconnect(fd, Confirmed);
            // Queued, since a receiver may run an event loop of its own.
            QMetaObject::invokeMethod(
                this, [this, pid, arguments = parsed.arguments] { Q_EMIT received(pid, arguments); },
                Qt::QueuedConnection);
    }
}

void SingleInstanceServer::replyAndDisconnect(int fd, char answer) {
    const auto found = m_peers.find(fd);
    if (found == m_peers.end())
        return;
    // One byte into an empty buffer cannot block; a peer that has disconnected is ignored.
    (void)::send(fd, &answer, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
    // This may run inside a signal of the peer's own timer or notifier: disable them, close, and destroy the
    // peer later.
    std::shared_ptr<Peer> peer(found->second.release());
    m_peers.erase(found);
    peer->notifier->setEnabled(false);
    peer->idle.stop();
    peer->socket.reset();
    QTimer::singleShot(0, this, [peer] {});
    if (!m_notifier->isEnabled())
        m_notifier->setEnabled(true);
}

}  // namespace Fenk
