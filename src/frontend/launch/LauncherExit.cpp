#include "launch/LauncherExit.h"

#include <algorithm>
#include <iterator>

namespace LauncherExit {

namespace {
// Bad usage, no program, no bottle, no Wine, a fault in the script, a 32-bit program without 32-bit Wine; no
// Python.
constexpr int ScriptFailures[] = {64, 66, 67, 69, 70, 78, 126, 127};
}  // namespace

bool isLaunchFailure(int exitCode) {
    return exitCode == NotStarted || std::find(std::begin(ScriptFailures), std::end(ScriptFailures),
                                               exitCode) != std::end(ScriptFailures);
}

}  // namespace LauncherExit
