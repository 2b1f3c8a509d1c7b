#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include "bottleservice/bottles/ShellLink.h"

/// Looks for programs in the files of a bottle. Follows no link, stays within limits of depth and number, and
/// leaves out what belongs to Wine. For worker threads.
namespace BottleScan {

struct Shortcut {
    QString file;  ///< path of the .lnk file
    QString name;  ///< what a menu shows
    ShellLink link;
};

/// The shortcuts in the bottle's menus and on its desktops that were written at this time or later and start
/// a program.
QVector<Shortcut> shortcuts(const QString& bottlePath, const QDateTime& since);

/// Installers put shortcuts on the user's own desktop, where they start nothing and would outlive the bottle.
/// Those that lead into it move to the desktop of all its users.
void clearUsersDesktop(const QString& bottlePath, const QDateTime& since);

/// Records of programs in the directories that installers choose, with "auto_discovered" true and an id that
/// stays the same for bottle and path.
QJsonArray discovered(const QString& bottle, const QString& bottlePath);

/// Names beside the programs of these records: DLLs without suffix, and programs that only update.
QStringList dllsBeside(const QString& bottlePath, const QJsonObject& programs);
QStringList updatersBeside(const QString& bottlePath, const QJsonObject& programs);

/// Whether an executable is one of those that Wine puts into each bottle.
bool isOfWine(const QString& file);

/// The Windows path of a file in drive_c.
QString windowsPath(const QString& bottlePath, const QString& file);

/// Whether two records start the same: paths of Windows have no case.
bool isSameStart(const QJsonObject& one, const QJsonObject& other);

}  // namespace BottleScan
