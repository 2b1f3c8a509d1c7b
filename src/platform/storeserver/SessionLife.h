#pragma once

#include <QObject>
#include <QTimer>

#include "storeserver/server/ServerThread.h"

namespace StoreServer {

/// Ends a server that nobody uses. It does so in two steps, so that a call that was already on its way is
/// still answered. Lives in the main thread.
class SessionLife : public QObject {
    Q_OBJECT

public:
    /// 0 seconds means never. `activity` must outlive this object.
    SessionLife(const ServerActivity& activity, int seconds, QObject* parent = nullptr);

Q_SIGNALS:
    /// The bus name must be released now, so that new calls reach the next process.
    void leaving();
    /// All calls that came before have been answered.
    void left();

private:
    void onTimeout();

    const ServerActivity& m_activity;
    const std::chrono::milliseconds m_limit;
    QTimer m_timer;
    bool m_isLeaving = false;
};

}  // namespace StoreServer
