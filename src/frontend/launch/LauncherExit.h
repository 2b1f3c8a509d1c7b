#pragma once

/// How launcher.py ends.
namespace LauncherExit {

constexpr int NotStarted = -1;  ///< the script itself could not be started, or was killed

}  // namespace LauncherExit
