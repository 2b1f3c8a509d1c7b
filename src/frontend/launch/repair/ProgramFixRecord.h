#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// What the log of a failed program asks for. All fields are empty if there is nothing to repair.
struct ProgramFixRecord {
    QString bottlesName;
    QString uuid;
    QStringList missingComponents;
    QStringList parsedLogs;

    /// The keys are the names of the fields.
    static QJsonObject toJson(const ProgramFixRecord& record);
    /// A key that is missing or has another type reads as empty; elements that are not strings read as empty
    /// too.
    static ProgramFixRecord fromJson(const QJsonObject& object);
};
