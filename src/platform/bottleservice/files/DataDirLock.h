#pragma once

#include <QString>

/// Holds the data directory for one process. Two sessions of a user have two buses but the same bottles, and
/// the queue of each bottle only works within one process. The kernel frees it however the process ends.
class DataDirLock {
public:
    explicit DataDirLock(const QString& dataDir);
    ~DataDirLock();
    DataDirLock(const DataDirLock&) = delete;
    DataDirLock& operator=(const DataDirLock&) = delete;

    /// Waits, for an earlier service that is about to end. False when the time is over.
    bool acquire(int timeoutMs);
    /// Another process waits in acquire().
    bool isWanted() const;

private:
    int m_fd = -1;
};
