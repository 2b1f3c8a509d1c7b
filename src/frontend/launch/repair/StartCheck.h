#pragma once

#include <QString>
#include <optional>

#include "launch/records/FailedStarts.h"

/// How a stored program that was started without a banner has ended.
struct StartEnd {
    QString bottle;
    QString uuid;
    std::optional<int> exitCode;  ///< empty when unknown
    bool isUp = false;            ///< a window was seen, or it ran until the time-out
    bool isStopped = false;       ///< by the user
};

/// Decides whether the start of a program failed, and why.
namespace StartCheck {

/// A start that is up has not failed, whatever comes later. Otherwise it failed if the log asks for
/// components, or if the exit code is neither 0 nor that of a program ended by a signal from outside.
bool isFailure(const StartEnd& end, bool hasComponents);

/// Reads the program's log and, if it asks for components, offers a repair by a desktop notification. A
/// failure always has a reason. Blocks on the service: call it in a worker thread.
FailedStart check(const StartEnd& end);

}  // namespace StartCheck
