#pragma once

#include <QJsonObject>
#include <QString>
#include <functional>

class QObject;
struct BusResult;

/// Single operations on bottles and their programs, each through the background service. Readers call the
/// service every time and block. Failures are logged and read as empty; nothing here shows a window.
namespace BottleUtils {

QString bottlePath(const QString& bottle);
QJsonObject bottlePrograms(const QString& bottle);  ///< program id to program record
/// The program's executable as a Unix path; empty for an unknown program, or for a Unix path that isn't a
/// file.
QString programPath(const QString& bottle, const QString& programId);
QString programPath(const QJsonObject& bottleRecord, const QString& programId);

bool createDesktopEntry(const QString& bottle, const QString& programId);
void killProgram(const QString& bottle, const QString& programId);
/// These two return at once and open when the service has answered; GUI thread.
void openDriveC(const QString& bottle);
void openProgramFolder(const QString& bottle, const QString& programId);
/// The optional handler gets the end of the call.
void runCommand(const QString& bottle, const QString& commandLine, QObject* context = nullptr,
                const std::function<void(const BusResult&)>& handler = {});

enum class Removal { Done, ProgramRefused, BottleRefused };
/// Removes a program; with the flag, also the bottle when that was its last one. Blocks; not in the GUI
/// thread.
Removal deleteEntry(const QString& bottle, const QString& programId, bool deleteEmptyBottle);
/// Removes a bottle whatever is in it: Done or BottleRefused. Blocks; not in the GUI thread.
Removal deleteBottle(const QString& bottle);
/// Adds an executable as a program. Returns the new program's id, or nothing when the service has refused.
QString addExe(const QString& bottle, const QString& name, const QString& path);
bool setStars(const QString& bottle, const QString& programId, int stars);

enum class Change { Done, NoProgram, Refused };
/// Sets a program's display name and icon file; always both, so that the last of several calls wins.
Change setNameAndIcon(const QString& bottle, const QString& programId, const QString& name,
                      const QString& icon);
void warnNotInBottle(const QString& bottle, const QString& programId);

}  // namespace BottleUtils
