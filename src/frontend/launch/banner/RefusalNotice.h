#pragma once

#include "launch/inspection/OpenRefusal.h"

class QWidget;

/// Tells the user why a file is not opened. GUI thread.
namespace RefusalNotice {

/// A window with the file's name, the reason and the advice, over `parent` unless it is null. If the same
/// refusal is already shown, raises its window.
void show(const QString& path, const OpenRefusal& refusal, QWidget* parent);

/// Sends a desktop notification. If there is no notification service and the file exists, shows a window that
/// closes by itself after 12 s, since a command line may have no user. True if a window is shown.
bool notify(const QString& path, const OpenRefusal& refusal);

}  // namespace RefusalNotice
