#pragma once

#include <QString>

/// The launched file as a program of its bottle.
struct FileEntry {
    QString bottle;
    QString name;
    QString exePath;

    /// The id of the program that the file is already, or nothing. Blocks on the bus as add() does.
    QString find() const;
    /// Enters the file unless the bottle has it already; the new program's id, or nothing. Blocks on the bus;
    /// for threads of the pool.
    QString add() const;
};
