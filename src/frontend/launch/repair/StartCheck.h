#pragma once

#include <QString>
#include <optional>

#include "launch/records/FailedStarts.h"

/// How a stored program has ended that was started without a banner.
struct StartEnd {
    QString bottle;
    QString uuid;
    std::optional<int> exitCode;  ///< nothing when only its end is known
    bool isUp = false;            ///< a window was seen, or it ran for as long as one is waited for
    bool isStopped = false;       ///< by the user
};

/// Whether the start of a program has failed, and why.
namespace StartCheck {

/// To be up is a good start, whatever has come of it. Without one the exit code tells, except that of a
/// program that somebody has ended, and so does a log that asks for components.
bool isFailure(const StartEnd& end, bool hasComponents);

/// Looks at the program's log, and offers a repair by a notification when the log asks for components. A
/// failure has a reason. Blocks: for threads that may wait for the service.
FailedStart check(const StartEnd& end);

}  // namespace StartCheck
