#pragma once

#include <QString>

class QFileDialog;
class QWidget;

/// Dialogs that choose a file of one kind. Each kind begins in the folder of the file that was chosen last,
/// also after the program was started anew.
namespace FileChoice {

enum class Kind { Program, Registry, Installer, Log, Icon };

/// Over the window of `over`, not open yet; deletes itself when it is closed. `firstFolder` is where it
/// begins as long as none was chosen from, or that folder is gone. Asks for a file that is there.
QFileDialog* make(Kind kind, QWidget* over, const QString& title, const QString& firstFolder,
                  const QString& filter);

}  // namespace FileChoice
