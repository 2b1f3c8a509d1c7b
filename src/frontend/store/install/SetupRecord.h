#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// The fields of a "setup_yml" record, written when the set-up of an application is over.
struct SetupRecord {
    bool succeeded = false;
    QString setupFile;
    QJsonObject fileInfo;
    QStringList logLines;  ///< the last ones, at most EventRecord::LogLines
    QString runner;
    int programs = 0;  ///< in the bottle
    bool canceled = false;
    bool isBottleReady = false;

    /// The complete record; `common` has the common keys.
    QJsonObject toJson(QJsonObject common) const;
};
