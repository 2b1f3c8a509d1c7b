#pragma once

#include <QString>

/// Where the logs of a bottle's programs lie.
namespace BottleLogs {

QString directory(const QString& bottlePath);

/// The name of a stored program's log in that directory.
QString programFile(const QString& programId);

/// The log of a stored program, which need not exist. Empty for a bottle without a directory, and for an id
/// that would lead out of it.
QString ofProgram(const QString& bottlePath, const QString& programId);

/// The name of the log of a file that is started without being stored as a program.
QString exeFile(const QString& fileName);

/// That log. Empty for a bottle without a directory, and for what is no plain file name.
QString ofExe(const QString& bottlePath, const QString& fileName);

}  // namespace BottleLogs
