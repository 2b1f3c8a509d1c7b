#pragma once

#include <QString>

/// Where a Windows shortcut (.lnk) leads on this machine. What the file says is not trusted: the target is
/// only looked up, and never started with the shortcut's arguments.
struct LinkTarget {
    QString windowsPath;  ///< as in the shortcut; empty when it leads to no file or folder
    QString file;         ///< the existing file or folder; empty when there is none
    QString bottle;       ///< in which the shortcut lies; may be empty

    /// In a bottle, by the bottle's drives. Otherwise by the relative path that it names, on drive Z, and on
    /// the disk where the shortcut lies, as for a mounted Windows. Reads the disk; for worker threads.
    static LinkTarget of(const QString& shortcut);
};
