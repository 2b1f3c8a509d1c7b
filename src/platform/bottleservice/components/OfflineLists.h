#pragma once

#include <atomic>

#include "bottleservice/components/OfflineList.h"
#include "bottleservice/result/Reason.h"

class Sources;

/// The lists of several files of exported components, and which of the files can be used together: those that
/// are readable, agree with what this machine knows, and have no file with another content than one before.
struct OfflineLists {
    QMap<QString, OfflineList> good;  ///< by path
    QMap<QString, Reason> bad;        ///< by path
    QMap<QString, Reason> lost;       ///< by component: those in readable lists of bad files

    /// Stops early, with incomplete lists, when cancelled. Blocks; for worker threads.
    static OfflineLists read(const QStringList& paths, const Sources& sources,
                             const std::atomic_bool& cancelled);

    /// All reasons of bad files.
    Reason faults() const;
};
