#pragma once

#include <QJsonObject>
#include <QString>

/// Small chores on bottles and their programs, each through the background service. Readers ask the service
/// every time. Failures are logged and read as empty; nothing here shows a window.
namespace BottleUtils {

QString bottlePath(const QString& bottle);
QJsonObject bottlePrograms(const QString& bottle);  ///< program id to program record
QString bottleRunner(const QString& bottle);
/// The program's executable as a Unix path; empty for an unknown program, or for a Unix path that isn't a
/// file.
QString programPath(const QString& bottle, const QString& programId);
QString programPath(const QJsonObject& bottleRecord, const QString& programId);

bool createDesktopEntry(const QString& bottle, const QString& programId);
void killProgram(const QString& bottle, const QString& programId);
/// Open when the service has told where the bottle is; GUI thread.
void openDriveC(const QString& bottle);
void openProgramFolder(const QString& bottle, const QString& programId);
void runCommand(const QString& bottle, const QString& commandLine);

enum class Removal { Done, ProgramRefused, BottleRefused };
/// Removes a program; with the flag, also the bottle when that was its last one. Waits for both, so not for
/// the GUI thread.
Removal deleteEntry(const QString& bottle, const QString& programId, bool deleteEmptyBottle);
/// Makes a program of an executable. Returns the new program's id, or nothing when the service has refused.
QString addExe(const QString& bottle, const QString& name, const QString& path);
bool setStars(const QString& bottle, const QString& programId, int stars);

enum class Change { Done, NoProgram, Refused };
/// What the user calls a program and by which picture; always both, so that the last of several counts.
Change setNameAndIcon(const QString& bottle, const QString& programId, const QString& name,
                      const QString& icon);
void warnNotInBottle(const QString& bottle, const QString& programId);

}  // namespace BottleUtils
