#pragma once

#include <QObject>
#include <QStringList>
#include <memory>
#include <unordered_map>

#include "fenk/system/OwnedFd.h"

class QSocketNotifier;

namespace Fenk {

/// The listening side of SingleInstance: receives arguments from processes of the same user and confirms each
/// list before it is passed on. A peer is disconnected if it sends an invalid or too long message, or no
/// complete message within IdleMs.
class SingleInstanceServer : public QObject {
    Q_OBJECT
public:
    static constexpr int IdleMs = 5000;
    static constexpr int MaxPeers = 256;
    static constexpr int PauseMs =
        200;  ///< delay before accept() is retried when file descriptors have run out
    static constexpr char Confirmed = '+';
    static constexpr char Refused = '-';

    explicit SingleInstanceServer(QObject* parent = nullptr);
    ~SingleInstanceServer() override;

    /// Replaces whatever exists at `path`. Only for the holder of the lock.
    bool listen(const QString& path);

Q_SIGNALS:
    void received(qint64 pid, const QStringList& arguments);

private:
    struct Peer;

    void acceptPeers();
    void addPeer(OwnedFd socket);
    void readPeer(int fd);
    void replyAndDisconnect(int fd, char answer);

    OwnedFd m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::unordered_map<int, std::unique_ptr<Peer>> m_peers;
};

}  // namespace Fenk
