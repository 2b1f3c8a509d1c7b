#pragma once

#include <QString>

#include "bottleservice/result/Reason.h"
#include "fenk/system/OwnedFd.h"

/// The lock on a bottle's drive_c: shared by launches and by the service's jobs, exclusive for those that
/// pack the bottle or bring it up to date with its package. The file system has no lock for a bottle that
/// does not exist yet or lies on a server without locks; a claim in the directory "running" counts then.
class BottleLock {
public:
    struct Refusal {
        Reason reason;           ///< empty: the lock is held
        bool mayEndSoon = true;  ///< packing takes minutes
    };

    /// Takes the shared lock; does not wait. No child process inherits it.
    Refusal acquire(const QString& bottlePath, const QString& runningDir, const QString& bottle);
    void release() { m_fd.reset(); }

private:
    Fenk::OwnedFd m_fd;
};
