#pragma once

#include <QString>

/// What the name of a Windows file tells about it, for lists of programs.
namespace ExecutableRules {

enum class Kind { Program, Updater, Helper };

/// Of an executable's file name. Helpers are uninstallers, crash reporters, redistributables and the like.
Kind kindOf(const QString& fileName);

/// Whether a shortcut of this name to this file is worth an entry: no uninstaller, no help, no web page.
bool isProgramShortcut(const QString& shortcutName, const QString& target);

/// Whether a Windows path leads to one of the programs that Wine brings with it.
bool isOfWine(const QString& path);

}  // namespace ExecutableRules
