#pragma once

#include <sys/types.h>

#include <QString>
#include <QVector>

/// What the launch script tells of each launch with an id, in a file of the directory "running":
///   <pid>.json: {"bottle", "program", "pid", "start"}, pid and start being those of the script.
struct LaunchRecord {
    QString bottle;
    QString program;
    pid_t pid = 0;  ///< 0 when the script has ended

    /// False for a file that tells of no program.
    static bool read(const QString& file, LaunchRecord* record);

    /// Scripts that live, of one program or (without an id) of all of the bottle.
    static QVector<pid_t> launchers(const QString& directory, const QString& bottle,
                                    const QString& program = {});
};
