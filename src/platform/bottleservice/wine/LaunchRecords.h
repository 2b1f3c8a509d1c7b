#pragma once

#include <sys/types.h>

#include <QString>
#include <QStringList>
#include <QVector>

/// What the launch script tells of each launch with an id, in a file of the directory "running":
///   <pid>.json: {"bottle", "program", "pid", "start"}, pid and start being those of the script.
struct LaunchRecord {
    QString bottle;
    QString program;
    pid_t pid = 0;  ///< 0 when the script has ended

    /// False for a file that tells of no program.
    static bool read(const QString& file, LaunchRecord* record);

    /// The programs that living launch scripts of a bottle have started or are about to start, by their ids
    /// or files' names, from files <pid>.start of the same form with "name" in the place of "program".
    static QStringList starting(const QString& directory, const QString& bottle);
    /// A living script that sees to a program, or is about to start it.
    struct Claim {
        QString bottle;
        QString name;  ///< an id, or the file's name
        QString file;  ///< Unix path of what is started without an id; may be empty
        pid_t pid;
    };
    static QVector<Claim> claims(const QString& directory);
    /// Removes those of scripts that were killed.
    static void removeEndedStarts(const QString& directory);

    /// Scripts that live, of one program or (without an id) all of the bottle, also those that still wait.
    static QVector<pid_t> launchers(const QString& directory, const QString& bottle,
                                    const QString& program = {});
};
