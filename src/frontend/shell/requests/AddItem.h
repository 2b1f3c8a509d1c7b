#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>

/// One input as it was found, judged by its name and its content.
struct AddItem {
    enum class Kind {
        Missing,
        Address,
        OtherAddress,  ///< of a kind that cannot be fetched
        Program,       ///< .exe, .msi, .bat, or a Windows program by its content
        Manifest,      ///< a .yml that tells how an application is installed
        Folder,
        Zip,
        DeadLink,    ///< a shortcut whose target is not on this machine
        NoFileLink,  ///< a shortcut to something that is no file
        Other
    };

    Kind kind = Kind::Other;
    QString path;         ///< absolute; of a shortcut that of its target; or the address
    QString shown;        ///< the name by which the user knows it
    QString folder;       ///< in which the input lies
    QString bottle;       ///< of a shortcut: the bottle in which it lies
    QString windowsPath;  ///< of a shortcut: its target
    QByteArray manifest;  ///< its text
    QString reason;       ///< why it cannot be added, for the user; empty if it can

    /// Looks at the file. Blocks, for a file on a server perhaps for long; for worker threads. Of a cancelled
    /// one only the kind is told.
    static AddItem read(const QString& input, const std::atomic_bool& isCancelled);
};
