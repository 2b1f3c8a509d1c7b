#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include "fenk/system/ExecutableKind.h"
#include "fenk/system/ShellLink.h"

/// Searches the files of a bottle for programs. Follows no link, has limits of depth and number, and leaves
/// out Wine's own programs. Blocks; for worker threads.
namespace BottleScan {

struct Shortcut {
    QString file;  ///< path of the .lnk file
    QString name;  ///< what a menu shows
    Fenk::ShellLink link;
};

/// The shortcuts to programs in the bottle's menus and on its desktops that were written at this time or
/// later.
QVector<Shortcut> shortcuts(const QString& bottlePath, const QDateTime& since);

/// Moves shortcuts that lead into the bottle from the user's own desktop, where they start nothing and would
/// outlive the bottle, to the desktop of all its users.
void clearUsersDesktop(const QString& bottlePath, const QDateTime& since);

/// Records of the programs in the directories that installers use, with "auto_discovered" true and an id that
/// stays the same for bottle and path.
QJsonArray discovered(const QString& bottle, const QString& bottlePath);

/// The names of DLLs (without suffix) and of updaters that lie beside these programs, as far as overrides can
/// have them.
QStringList dllsBeside(const QString& bottlePath, const QJsonObject& programs);
QStringList updatersBeside(const QString& bottlePath, const QJsonObject& programs);

/// By its name and, in "Program Files", that of the folder there.
Fenk::ExecutableKind kindOf(const QString& file);

/// Whether an executable is one of those that Wine puts into every bottle.
bool isOfWine(const QString& file);

/// The Windows path of a file in drive_c.
QString windowsPath(const QString& bottlePath, const QString& file);

/// Whether two records start the same program with the same arguments; case does not matter in Windows paths.
bool isSameStart(const QJsonObject& one, const QJsonObject& other);

}  // namespace BottleScan
