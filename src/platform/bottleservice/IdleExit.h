#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

/// Ends a service that has nothing to do and has not been called for a while; the next call starts it again.
/// It ends in two steps, so that a call which was already on its way is still answered. Lives in the main
/// thread.
class IdleExit : public QObject {
    Q_OBJECT

public:
    /// 0 seconds means never. isIdle tells whether the service may begin to leave, isDone whether all work
    /// that must be finished is done. Work that begins while the service is leaving, such as a program that a
    /// user starts, is left to the next service.
    IdleExit(int seconds, std::function<bool()> isIdle, std::function<bool()> isDone,
             QObject* parent = nullptr);

public Q_SLOTS:
    /// A method was called.
    void touch();

Q_SIGNALS:
    /// The bus name must be released now, so that new calls reach the next service.
    void leaving();
    /// All calls that came before have been answered.
    void left();

private:
    void onTimeout();

    std::function<bool()> m_isIdle;
    std::function<bool()> m_isDone;
    QTimer m_timer;
    bool m_leaving = false;
};
