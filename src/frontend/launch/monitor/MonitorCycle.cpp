#include "launch/monitor/MonitorCycle.h"

#include <QDebug>

#include "core/base/WineNames.h"

namespace {

constexpr unsigned CyclesWithoutWindow = 30;
constexpr unsigned CyclesAfterWindow = 5;

}  // namespace

bool MonitorCycle::step(const Processes& processes, const Windows& windows,
                        const std::function<void()>& onStart) {
    switch (judge(processes, windows, onStart)) {
        case Verdict::Gone:
            return true;
        case Verdict::Unchanged:
            if (hasTimedOut(processes))
                return true;
            break;
        case Verdict::Alive:
            unchangedCycles = 0;
            break;
    }
    checkForCrash(processes);
    lastWindowCount = windows.size();
    lastProcessList = processes;
    return false;
}

MonitorCycle::Verdict MonitorCycle::judge(const Processes& processes, const Windows& windows,
                                          const std::function<void()>& onStart) {
    if (!lastProcessList.isEmpty() && processes.isEmpty()) {
        qInfo() << "Seems all processs are dead.";
        return Verdict::Gone;
    }
    if (!windows.isEmpty()) {
        if (lastWindowCount == 0) {
            qInfo() << "a window created";
            windowSeen = true;
            onStart();
        }
        return Verdict::Alive;
    }
    if (!windowSeen)
        return lastWindowCount == 0 ? Verdict::Unchanged : Verdict::Alive;
    if (processes.isEmpty()) {
        qInfo() << "Seems app quit!";
        return Verdict::Gone;
    }
    // The last window was closed in this cycle; the program may open another.
    return lastWindowCount == 0 ? Verdict::Unchanged : Verdict::Alive;
}

bool MonitorCycle::hasTimedOut(const Processes& processes) {
    if (processes != lastProcessList) {
        unchangedCycles = 0;
        return false;
    }
    ++unchangedCycles;
    qInfo() << "am I Dead? " << unchangedCycles;
    const unsigned limit = windowSeen || processes.isEmpty() ? CyclesAfterWindow : CyclesWithoutWindow;
    if (unchangedCycles != limit)
        return false;
    qInfo() << "Seems app quit, but processs are still alive.";
    return true;
}

void MonitorCycle::checkForCrash(const Processes& processes) {
    for (auto process = processes.begin(); process != processes.end() && !crashed; ++process) {
        const QString& name = process.value();
        if (!WineNames::isCrashReporter(name))
            continue;
        qInfo() << "Seems app crash. process_name: " << name;
        crashed = true;
    }
}
