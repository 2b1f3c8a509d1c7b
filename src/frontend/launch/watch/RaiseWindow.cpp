#include "launch/watch/RaiseWindow.h"

#include "launch/watch/X11Desktop.h"

bool RaiseWindow::ofProcesses(const QVector<qint64>& pids) {
    X11Desktop desktop;
    const QVector<X11Desktop::Window> windows = desktop.windows();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        const qint64 pid = desktop.processOf(*window);
        if (pid != 0 && pids.contains(pid))
            return desktop.activate(*window);
    }
    return false;
}
