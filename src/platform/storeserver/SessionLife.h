#pragma once

#include <QObject>
#include <QTimer>

#include "storeserver/server/ServerThread.h"

namespace StoreServer {

/// Ends a server that nobody uses. It does so in two steps: calls that were already on their way when the
/// name was released are still answered, and so is what their callers ask for with the address that they got.
/// Lives in the main thread.
class SessionLife : public QObject {
    Q_OBJECT

public:
    /// 0 seconds means never. `activity` must outlive this object.
    SessionLife(const ServerActivity& activity, int seconds, QObject* parent = nullptr);

Q_SIGNALS:
    /// The bus name must be released now, so that new calls reach the next process.
    void leaving();
    /// Nobody has used the server for a while since.
    void left();

private:
    void onTimeout();

    const ServerActivity& m_activity;
    const std::chrono::milliseconds m_limit;
    QTimer m_timer;
    bool m_isLeaving = false;
};

}  // namespace StoreServer
