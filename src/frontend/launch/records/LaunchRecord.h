#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// The fields of a "launch_exe" record, written when the launch of a file is over.
struct LaunchRecord {
    bool succeeded = false;
    QString exePath;
    QJsonObject fileInfo;
    QStringList logLines;  ///< last lines of the launch, at most EventRecord::LogLines
    int rating = 0;        ///< 0: none given
    QString runner;
    int programs = 0;  ///< in the bottle
    bool repaired = false;
    bool canceled = false;

    /// The complete record; `common` has the common keys.
    QJsonObject toJson(QJsonObject common) const;
};
