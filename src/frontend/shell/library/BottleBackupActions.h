#pragma once

#include "programs/Program.h"

class QJsonObject;
class QWidget;

/// What the library offers to do with whole bottles. Each action asks for a file first; the dialogs lie over
/// the window of `over`. GUI thread; waits for nothing.
namespace BottleBackupActions {

/// Backs up the bottle of a program.
void backUp(const Program& program, QWidget* over);
/// Shows what a backup holds, and restores it when the user agrees.
void restore(QWidget* over);

/// A name for the file of a backup, from the program's.
QString fileNameFor(const QString& program, const QDate& today);
/// The names of the programs in a backup, or the bottle's name when it has none.
QString nameOf(const QJsonObject& description);

}  // namespace BottleBackupActions
