#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <functional>

/// Decides from one list of processes and windows to the next whether a program has come up, is gone or has
/// crashed. A cycle takes about a second: a program that never shows a window is given half a minute in which
/// nothing changes, one that has closed its last window five seconds.
class MonitorCycle {
public:
    using Processes = QMap<QString, QString>;        ///< id to name
    using Windows = QList<QPair<QString, QString>>;  ///< id and title

    /// True when the program is gone; nothing is kept of that cycle. onStart is called when the first window
    /// appears, before anything else of the cycle is looked at.
    bool step(const Processes& processes, const Windows& windows, const std::function<void()>& onStart);

    /// Gives a program that is gone for step() as many cycles once more.
    void waitAgain() { unchangedCycles = 0; }

    bool crashed = false;     ///< a crash reporter or debugger was among the processes
    bool windowSeen = false;  ///< the program has shown a window

private:
    enum class Verdict { Alive, Unchanged, Gone };

    Verdict judge(const Processes& processes, const Windows& windows, const std::function<void()>& onStart);
    bool isGivenUp(const Processes& processes);
    void checkForCrash(const Processes& processes);

    int lastWindowCount = 0;
    Processes lastProcessList;
    unsigned unchangedCycles = 0;
};
