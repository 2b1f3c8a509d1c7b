#pragma once

#include <QString>

class QFileDialog;
class QWidget;

/// Dialogs that choose a file. Each kind opens in the folder of the file that was chosen last, which the
/// settings keep.
namespace FileChoice {

enum class Kind { Program, Registry, Installer, Log, Icon, Components, Backup, Picture, Report };

/// A dialog over the window of `over`; the caller opens it, and it deletes itself when it is closed. Opens in
/// `firstFolder`, or where that is missing in the home directory, if no file was chosen before or that folder
/// is gone. One existing file can be chosen; the caller may set another mode.
QFileDialog* make(Kind kind, QWidget* over, const QString& title, const QString& firstFolder,
                  const QString& filter);

}  // namespace FileChoice
