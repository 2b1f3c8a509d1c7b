#pragma once

#include <QFuture>
#include <QString>
#include <functional>

#include "launch/open/FileEntry.h"

struct BusResult;

/// What a launch leaves behind when it ends. The service decides whether the bottle goes; when it stays with
/// programs, the set-up's own entry goes. Where nothing else leads to a bottle that stays, the launched file
/// is a program of it.
struct LaunchCleanUp {
    FileEntry file;
    bool isSetUp = false;    ///< the launched file is an installer, whose entry does not count
    QFuture<QString> added;  ///< the id of the entry that was made of the file; may be under way or canceled

    /// Goes on by itself, also when the launch is gone, and holds a PendingWork until it has ended. Without
    /// an answer of the service everything stays. Calls then at the end. GUI thread.
    void start(const std::function<void()>& then) const;

private:
    void ask(const QString& id, int attempts, const std::function<void()>& end) const;
    void conclude(const QString& id, const BusResult& answer, const std::function<void()>& end) const;
};
