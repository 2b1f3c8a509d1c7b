#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <functional>

/// Decides from successive lists of processes and windows whether a program has started, exited or crashed. A
/// cycle takes about 1 s. A program that never shows a window counts as exited after 30 cycles without a
/// change, one that has closed its last window after 5.
class MonitorCycle {
public:
    using Processes = QMap<QString, QString>;        ///< id to name
    using Windows = QList<QPair<QString, QString>>;  ///< id and title

    /// Returns true if the program has exited; that cycle is not stored. Calls onStart when the first window
    /// appears, before it evaluates the rest of the cycle.
    bool step(const Processes& processes, const Windows& windows, const std::function<void()>& onStart);

    /// Restarts the count of unchanged cycles after step() returned true.
    void restartTimeout() { unchangedCycles = 0; }

    bool crashed = false;     ///< a crash reporter or debugger was among the processes
    bool windowSeen = false;  ///< the program has shown a window

private:
    enum class Verdict { Alive, Unchanged, Gone };

    Verdict judge(const Processes& processes, const Windows& windows, const std::function<void()>& onStart);
    bool hasTimedOut(const Processes& processes);
    void checkForCrash(const Processes& processes);

    int lastWindowCount = 0;
    Processes lastProcessList;
    unsigned unchangedCycles = 0;
};
