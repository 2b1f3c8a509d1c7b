#pragma once

#include "launch/inspection/OpenRefusal.h"

class QWidget;

/// Tells the user why a file is not opened. Lives in the GUI thread.
namespace RefusalNotice {

/// A window with the file's name, the reason and the advice; over the parent where there is one. The same
/// refusal is shown once: a second time raises the window that is there.
void show(const QString& path, const OpenRefusal& refusal, QWidget* parent);

/// A notification of the desktop, and for a file that is there, where nobody takes it, a window that goes by
/// itself after a while. For what was named on a command line, behind which nobody may be sitting.
/// True when it is a window.
bool notify(const QString& path, const OpenRefusal& refusal);

}  // namespace RefusalNotice
