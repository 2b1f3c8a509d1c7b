#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// What the records for the event log have in common.
namespace EventRecord {

enum Tid { StartTid = 1001400000, LaunchTid = 1001400001 };

/// The keys of every record: "tid", "version", "machine" (see machineInfo) and "time". Alone, with StartTid,
/// they are the record of the application's start.
QJsonObject common(const QDateTime& now, const QJsonObject& machine, Tid tid = LaunchTid);

/// Text as records carry it: Base64 of its local 8-bit encoding.
QString base64(const QString& text);
/// "fileinfo_64": all that is known of an executable. Runs the inspection and waits for it.
QString fileInfo64(const QString& path);

constexpr int LogLines = 40;
/// The end of a log: its last lines, without those of Wine's trace channels and those beyond 1024 characters.
/// Of a file beyond 10 MiB only that much is looked at. Empty for what is no regular file.
QStringList logTail(const QString& path);

}  // namespace EventRecord
