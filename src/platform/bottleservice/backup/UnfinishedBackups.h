#pragma once

#include <QString>

/// Notes of backups that are being written, since these lie anywhere on the disk: what a killed service has
/// left there is removed by the next one. A note is a hidden file in the data directory with the path of the
/// unfinished file.
namespace UnfinishedBackups {

/// Writes a note and returns its path; empty with an error text on failure.
QString note(const QString& dataDir, const QString& unfinished, QString* error);
/// Removes a note; an empty path is none.
void forget(const QString& note);

/// Removes the unfinished files of all notes, and the notes.
void removeAll(const QString& dataDir);

}  // namespace UnfinishedBackups
