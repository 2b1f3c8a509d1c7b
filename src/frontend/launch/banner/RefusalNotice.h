#pragma once

#include "launch/inspection/OpenRefusal.h"

class QWidget;

/// Tells the user why a file is not opened. Lives in the GUI thread.
namespace RefusalNotice {

/// A window with the file's name, the reason and the advice; over the parent where there is one. The same
/// refusal is shown once: a second time raises the window that is there.
void show(const QString& path, const OpenRefusal& refusal, QWidget* parent);

/// Sends a notification of the desktop. Where no service takes it, an existing file gets a window that closes
/// by itself after a while, since nobody may be sitting before a command line. True when it is a window.
bool notify(const QString& path, const OpenRefusal& refusal);

}  // namespace RefusalNotice
