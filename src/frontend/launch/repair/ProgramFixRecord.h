#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// What the log of a program that has failed asks for. Empty in all four when there is nothing to repair.
struct ProgramFixRecord {
    QString bottlesName;
    QString uuid;
    QStringList missingComponents;
    QStringList parsedLogs;

    /// An object with the names of the fields as keys.
    static QJsonObject toJson(const ProgramFixRecord& record);
    /// A key that is missing or of another type reads as empty, and so does an element that is no text.
    static ProgramFixRecord fromJson(const QJsonObject& object);
};
