#pragma once

#include <QString>

/// Rules about the names of Windows files, for lists of programs.
namespace ExecutableRules {

/// Whether a shortcut of this name to this file should be entered as a program: no uninstaller, help or web
/// page.
bool isProgramShortcut(const QString& shortcutName, const QString& target);

/// Whether a Windows path leads to one of the programs that Wine brings with it.
bool isOfWine(const QString& path);

}  // namespace ExecutableRules
