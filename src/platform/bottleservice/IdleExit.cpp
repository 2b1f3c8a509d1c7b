#include "bottleservice/IdleExit.h"

namespace {

constexpr int LeavingMs = 300;

}  // namespace

IdleExit::IdleExit(int seconds, std::function<bool()> isIdle, std::function<bool()> isDone, QObject* parent)
    : QObject(parent), m_isIdle(std::move(isIdle)), m_isDone(std::move(isDone)) {
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
    if (!m_leaving && m_isIdle()) {
        m_leaving = true;
        Q_EMIT leaving();
        m_timer.start(LeavingMs);
    } else if (m_leaving && m_isDone()) {
        m_timer.stop();
        Q_EMIT left();
    }
}
