#include "storeserver/SessionLife.h"

namespace StoreServer {

namespace {

constexpr std::chrono::milliseconds Arriving{300};  // of calls that were sent before the name was released
constexpr std::chrono::milliseconds Lingering{2000};

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
    const std::chrono::milliseconds wanted = m_isLeaving ? Lingering : m_limit;
    if (unused < wanted) {
        m_timer.start(wanted - unused);
    } else if (m_isLeaving) {
        Q_EMIT left();
    } else {
        m_isLeaving = true;
        Q_EMIT leaving();
        m_timer.start(Arriving);
    }
}

}  // namespace StoreServer
