#pragma once

#include <QVector>

namespace RaiseWindow {

/// Asks the window manager to bring the topmost window of these processes to the front; false when they have
/// none. Waits for the X server: for worker threads.
bool ofProcesses(const QVector<qint64>& pids);

}  // namespace RaiseWindow
