#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

/// The rules of program records: what a caller may send, how a partial record is merged, what a summary has.
namespace Programs {

constexpr int MaximumRecordBytes = 1024 * 1024;

/// A hyphenated UUID without braces: what clients create.
bool isProgramId(const QString& id);

/// Reads and checks the record in a caller's JSON text. On failure an empty object and an error text.
QJsonObject parse(const QString& json, QString* error);

/// The old record with the given keys replaced. "envs" is replaced as a whole, so that a variable can be
/// removed. "auto_discovered" is removed, since a client has entered the record.
QJsonObject merged(const QJsonObject& old, const QJsonObject& given);

/// A new record with default values for what the caller left out. On failure an empty object and an error
/// text.
QJsonObject completed(const QJsonObject& given, const QDateTime& now, QString* error);

/// One element of the list of all programs. bottlePath is needed to find the program's file.
QJsonObject summary(const QString& bottle, const QString& bottlePath, const QJsonObject& record);

/// The directory part of a Windows or Unix path, in the form of the path.
QString folderOf(const QString& path);

}  // namespace Programs
