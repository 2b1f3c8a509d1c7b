#pragma once

#include <QString>
#include <QStringList>

namespace Fenk {

enum class ExecutableKind { Program, Updater, Helper };

/// The kind of a Windows executable, by its file name. Helpers are uninstallers, crash reporters,
/// redistributables and the like. Words that may also stand in a program's own name, such as "proxy", do not
/// count for the program that has the name of its folder.
ExecutableKind executableKind(const QString& fileName, const QString& folderName = {});

/// Whether one of the texts in a version block says that it is no Program.
bool describesHelper(const QStringList& names);

/// The letters and figures of a program's name in lower case, without version, processor and the words that
/// archives add.
QString programNameEssence(const QString& name);

}  // namespace Fenk
