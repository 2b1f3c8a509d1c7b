#include "bottleservice/IdleExit.h"

namespace {

constexpr int LeavingMs = 300;

}  // namespace

IdleExit::IdleExit(int seconds, std::function<bool()> isIdle, QObject* parent)
    : QObject(parent), m_isIdle(std::move(isIdle)) {
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &IdleExit::onTimeout);
    if (seconds > 0)
        m_timer.start(seconds * 1000);
}

void IdleExit::touch() {
    if (m_timer.isActive())
        m_timer.start();
}

void IdleExit::onTimeout() {
    if (!m_isIdle())
        return;
    if (m_leaving) {
        m_timer.stop();
        Q_EMIT left();
        return;
    }
    m_leaving = true;
    Q_EMIT leaving();
    m_timer.start(LeavingMs);
}
