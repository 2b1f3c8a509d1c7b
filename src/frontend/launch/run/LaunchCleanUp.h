#pragma once

#include <functional>

#include "launch/run/LaunchedProgram.h"

struct BusResult;

/// Removes what a launch left behind. The entry of a set-up is of no more use, nor is a bottle that was made
/// for a launch which was canceled: the service deletes the bottle when nothing was installed in it. When the
/// bottle stays with programs, the entry of the set-up goes. When it stays without any, the launched file
/// becomes a program of it, so that something leads to it. After any other launch everything stays.
struct LaunchCleanUp {
    LaunchedProgram program;
    bool isSetUp = false;     ///< the launched file is an installer, whose entry does not count
    bool isCanceled = false;  ///< the launch was canceled, and the bottle was made for it

    /// Returns at once and goes on when the launch is gone; holds a PendingWork until the end. Calls `then`
    /// when the bottle is as it stays, at once when nothing is to be done. Without an answer of the service
    /// everything stays. GUI thread.
    void start(const std::function<void()>& then) const;

private:
    void ask(const QString& id, int attempts, const std::function<void()>& end) const;
    void conclude(const QString& id, const BusResult& answer, const std::function<void()>& end) const;
    void removeEntry(const QString& id, const std::function<void()>& end) const;
    void addEntry(const std::function<void()>& end) const;
};
