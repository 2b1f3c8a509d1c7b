#pragma once

#include <QString>

#include "fenk/system/OwnedFd.h"

/// Reserves the data directory for one process. Two sessions of a user have two buses but the same bottles,
/// and the queues work within one process only. The kernel releases the lock however the process ends.
class DataDirLock {
public:
    explicit DataDirLock(const QString& dataDir);

    /// Waits for an earlier service that is about to end. Returns false when the time is over.
    bool acquire(int timeoutMs);
    /// Whether another process waits in acquire().
    bool isWanted() const;

private:
    Fenk::OwnedFd m_fd;
};
