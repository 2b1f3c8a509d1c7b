#pragma once

#include <QFuture>
#include <QString>
#include <functional>

/// What a launch leaves behind when it ends. The service decides whether the bottle goes; when it stays with
/// programs, the set-up's own entry goes. One that is all that the bottle has stays, since nothing else would
/// lead to the bottle.
struct LaunchCleanUp {
    QString bottle;
    bool isSetUp = false;    ///< the launched file is an installer, whose entry does not count
    QFuture<QString> added;  ///< the id of the entry that was made of the file; may be under way or canceled

    /// Goes on by itself, also when the launch is gone, and holds a PendingWork until it has ended. Without
    /// an answer of the service everything stays. Calls then at the end. GUI thread.
    void start(const std::function<void()>& then) const;
};
