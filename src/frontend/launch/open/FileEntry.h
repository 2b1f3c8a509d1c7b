#pragma once

#include <QString>

/// The program entry of a launched file in its bottle.
struct FileEntry {
    QString bottle;
    QString name;
    QString exePath;

    /// The id of the existing entry, or empty. Blocks on the service.
    QString find() const;
    /// Adds an entry unless there is one, and returns its id, or empty. Blocks on the service; call it in a
    /// thread of the pool.
    QString add() const;
};
