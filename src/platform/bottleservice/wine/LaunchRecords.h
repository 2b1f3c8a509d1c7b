#pragma once

#include <sys/types.h>

#include <QString>
#include <QStringList>
#include <QVector>

/// The files that launch scripts write into the directory "running":
///   <pid>.json, for each launch with an id: {"bottle", "program", "pid", "start"};
///   <pid>.start, as long as the script runs: the same with "name" in place of "program". With "kind" it is
///   of no launch but of a script that has the bottle for itself: "packing" or "upgrade".
/// pid and start are those of the script.
struct LaunchRecord {
    QString bottle;
    QString program;
    pid_t pid = 0;  ///< 0 when the script has ended

    /// Reads a <pid>.json. Returns false when it names no program.
    static bool read(const QString& file, LaunchRecord* record);

    /// A running script that has started a program or is about to.
    struct Claim {
        QString bottle;
        QString name;  ///< the program's id, or its file's name
        QString file;  ///< Unix path of a program that is started without an id; may be empty
        pid_t pid;
    };
    static QVector<Claim> claims(const QString& directory);
    /// The names of the claims of a bottle.
    static QStringList starting(const QString& directory, const QString& bottle);
    /// The kind of the running script that has the bottle for itself; empty without one.
    static QString maintenance(const QString& directory, const QString& bottle);
    /// Removes the <pid>.start files of scripts that were killed.
    static void removeEndedStarts(const QString& directory);

    /// The running scripts of one program or (without an id) of the whole bottle, also those that still wait.
    static QVector<pid_t> launchers(const QString& directory, const QString& bottle,
                                    const QString& program = {});
};
