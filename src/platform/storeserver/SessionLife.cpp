#include "storeserver/SessionLife.h"

namespace StoreServer {

namespace {

constexpr int LeavingMs = 300;

}  // namespace

SessionLife::SessionLife(const ServerActivity& activity, int seconds, QObject* parent)
    : QObject(parent), m_activity(activity), m_limit(std::chrono::seconds(seconds)) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SessionLife::onTimeout);
    if (seconds > 0)
        m_timer.start(m_limit);
}

void SessionLife::onTimeout() {
    const auto unused = std::chrono::duration_cast<std::chrono::milliseconds>(m_activity.sinceLast());
    if (m_isLeaving) {
        Q_EMIT left();
    } else if (unused < m_limit) {
        m_timer.start(m_limit - unused);
    } else {
        m_isLeaving = true;
        Q_EMIT leaving();
        m_timer.start(LeavingMs);
    }
}

}  // namespace StoreServer
