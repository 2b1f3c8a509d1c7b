#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

/// Ends a service that nobody has asked anything for a while and that has nothing to do: the next call starts
/// it again. It goes in two steps, so that a call which was already on its way is still answered.
class IdleExit : public QObject {
    Q_OBJECT

public:
    /// 0 seconds: never. isDone says whether nothing is under way that must be finished; what begins while
    /// the service is leaving, such as a user's program, is the next service's and must not hold this one.
    IdleExit(int seconds, std::function<bool()> isIdle, std::function<bool()> isDone,
             QObject* parent = nullptr);

public Q_SLOTS:
    /// Somebody asked for something.
    void touch();

Q_SIGNALS:
    /// New calls must no longer reach this process.
    void leaving();
    /// What reached it before has been done.
    void left();

private:
    void onTimeout();

    std::function<bool()> m_isIdle;
    std::function<bool()> m_isDone;
    QTimer m_timer;
    bool m_leaving = false;
};
