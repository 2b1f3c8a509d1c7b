#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// The common parts of the records in the event log.
namespace EventRecord {

enum Tid { StartTid = 1001400000, LaunchTid = 1001400001 };

/// The keys of every record: "tid", "version", "machine" (see machineInfo) and "time". With StartTid these
/// are the whole record of the application's start.
QJsonObject common(const QDateTime& now, const QJsonObject& machine, Tid tid = LaunchTid);

/// Base64 of the text in local 8-bit encoding, as records store it.
QString base64(const QString& text);
/// The value of "fileinfo_64": everything known about an executable. Runs the inspection tools and waits for
/// them.
QString fileInfo64(const QString& path);

constexpr int LogLines = 40;
/// The last LogLines lines of a log, without lines of Wine's trace channels and lines longer than 1024
/// characters. Reads at most the last 10 MiB. Empty for anything but a regular file.
QStringList logTail(const QString& path);

}  // namespace EventRecord
