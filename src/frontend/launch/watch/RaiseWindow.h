#pragma once

#include <QVector>

namespace RaiseWindow {

/// Asks the window manager to raise the topmost window of these processes; false if they have none. Blocks on
/// the X server: call it in a worker thread.
bool ofProcesses(const QVector<qint64>& pids);

}  // namespace RaiseWindow
