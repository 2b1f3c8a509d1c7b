#include "launch/monitor/MonitorProtocol.h"

#include <QSet>

namespace {

const QString Separator = QStringLiteral(" - ");

bool isIgnoredProcess(const QString& name) {
    static const QSet<QString> names = {"enum_process_window.exe",
                                        "proc-launcher.exe",
                                        "start.exe",
                                        "winemenubuilder.exe",
                                        "services.exe",
                                        "winedevice.exe",
                                        "plugplay.exe",
                                        "svchost.exe",
                                        "explorer.exe",
                                        "conhost.exe",
                                        "rpcss.exe",
                                        "mscorsvw.exe"};
    return names.contains(name);
}

bool isIgnoredTitle(const QString& title) {
    static const QSet<QString> titles = {"Default IME", "DXGI device window"};
    return titles.contains(title);
}

}  // namespace

bool MonitorProtocol::read(const QString& line) {
    if (line.startsWith("::process list")) {
        processList.clear();
        readingWindows = 0;
    } else if (line.startsWith("::window list")) {
        windowList.clear();
        readingWindows = 1;
    } else if (line.startsWith("::end")) {
        return true;
    } else if (readingWindows == 0) {
        readProcess(line);
    } else {
        readWindow(line);
    }
    return false;
}

void MonitorProtocol::readProcess(const QString& line) {
    const QString id = line.section(Separator, 0, 0);
    const QString name = line.section(Separator, 2);
    if (!id.isEmpty() && !name.isEmpty() && !isIgnoredProcess(name))
        processList[id] = name;
}

void MonitorProtocol::readWindow(const QString& line) {
    const QString id = line.section(Separator, 0, 0);
    const QString title = line.section(Separator, 1);
    // Processes come first in a cycle, so this also drops the windows of ignored processes.
    if (processList.contains(id) && !isIgnoredTitle(title))
        windowList.append({id, title});
}
