#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

/// The rules of program records: what a caller may send, how a partial record is merged, what a summary
/// shows.
namespace Programs {

constexpr int MaximumRecordBytes = 1024 * 1024;

/// A hyphenated UUID without braces: what clients create.
bool isProgramId(const QString& id);

/// The record in a caller's JSON text, checked key by key. On failure an empty object and a sentence.
QJsonObject parse(const QString& json, QString* error);

/// The given keys laid over the old record; "envs" is replaced as a whole so that a variable can be removed.
/// "auto_discovered" goes, since a record that a client sent is a client's record.
QJsonObject merged(const QJsonObject& old, const QJsonObject& given);

/// A new record with what the caller left out filled in. On failure an empty object and a sentence.
QJsonObject completed(const QJsonObject& given, const QDateTime& now, QString* error);

/// One element of the list of all programs. bottlePath serves to find the file of the program.
QJsonObject summary(const QString& bottle, const QString& bottlePath, const QJsonObject& record);

/// The directory part of a Windows or Unix path, in the form of the path.
QString folderOf(const QString& path);

}  // namespace Programs
