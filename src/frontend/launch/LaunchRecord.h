#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// What is told of the launch of a file when it is over: the part of the record "launch_exe" that is not in
/// every record.
struct LaunchRecord {
    static constexpr int LogLines = 40;  ///< of the launch, the last ones

    bool succeeded = false;
    QString exePath;
    QJsonObject fileInfo;
    QStringList logLines;
    int rating = 0;  ///< 0 when none was given
    QString runner;
    int programs = 0;  ///< in the bottle
    bool repaired = false;
    bool canceled = false;

    /// The record upon its common keys.
    QJsonObject toJson(QJsonObject common) const;
};
