#pragma once

#include <sys/types.h>

#include <QObject>
#include <QString>

/// Reports the end of a process that is no child of the service. The kernel tells it; where the kernel cannot
/// (before 5.3), it is polled twice a second.
class ProcessEnd : public QObject {
    Q_OBJECT

public:
    explicit ProcessEnd(pid_t pid, QObject* parent = nullptr);
    ~ProcessEnd() override;

    /// The time when a process started, in clock ticks since the machine did; together with the pid it
    /// identifies the process. Empty when there is no such process.
    static QString startTime(pid_t pid);

Q_SIGNALS:
    /// Exactly once, never from the constructor.
    void ended();

private:
    int m_fd = -1;
};
