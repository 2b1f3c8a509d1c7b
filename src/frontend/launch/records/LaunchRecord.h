#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// What is told of the launch of a file when it is over: the part of the record "launch_exe" that is not in
/// every record.
struct LaunchRecord {
    bool succeeded = false;
    QString exePath;
    QJsonObject fileInfo;
    QStringList logLines;  ///< the last ones of the launch, at most EventRecord::LogLines
    int rating = 0;        ///< 0 when none was given
    QString runner;
    int programs = 0;  ///< in the bottle
    bool repaired = false;
    bool canceled = false;

    /// The record upon its common keys.
    QJsonObject toJson(QJsonObject common) const;
};
