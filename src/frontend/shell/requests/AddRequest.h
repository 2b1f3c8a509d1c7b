#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// One input as it was found.
struct AddItem {
    enum class Kind {
        Missing,
        Address,
        Program,  ///< .exe, .msi, .bat, or a Windows program by its content
        Manifest,
        Folder,
        Zip,
        DeadLink,    ///< a shortcut whose target is not on this machine
        NoFileLink,  ///< a shortcut to something that is no file
        Other
    };

    Kind kind = Kind::Other;
    QString path;         ///< absolute; of a shortcut that of its target; or the address
    QString shown;        ///< the name by which the user knows it
    QString detail;       ///< DeadLink: the Windows path
    QString folder;       ///< in which the input lies
    QString bottle;       ///< of a shortcut: the bottle in which it lies
    QString windowsPath;  ///< of a shortcut: its target

    /// Looks at the file. Blocks, for a file on a server perhaps for long; for worker threads.
    static AddItem read(const QString& input);
};

/// What is to be done with all that the user dropped or pasted at once.
struct AddRequest {
    enum class Kind {
        Nothing,
        Open,      ///< one file as a program; whoever opens it refuses what is none, with a reason
        Several,   ///< programs, each to be opened
        Manifest,  ///< one
        Portable,  ///< one folder or zip archive
        Address,   ///< one
        Refused    ///< errorText says why
    };
    static constexpr int MostPrograms = 8;

    Kind kind = Kind::Nothing;
    QVector<AddItem> items{};
    QString errorText{};

    /// The rule. A program with other files of its folder is that program, as they lie beside it anyway.
    static AddRequest of(const QVector<AddItem>& items);
};
