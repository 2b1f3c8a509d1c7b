#pragma once

#include <sys/types.h>

#include <QObject>
#include <QString>

/// Tells when a process that is not this one's child has ended. The kernel wakes it up; where the kernel
/// cannot (before 5.3), it looks twice a second.
class ProcessEnd : public QObject {
    Q_OBJECT

public:
    explicit ProcessEnd(pid_t pid, QObject* parent = nullptr);
    ~ProcessEnd() override;

    /// When a process started, in clock ticks since the machine did: with the pid it names one process. Empty
    /// when there is no such process.
    static QString startTime(pid_t pid);

Q_SIGNALS:
    /// Exactly once, never from the constructor.
    void ended();

private:
    int m_fd = -1;
};
