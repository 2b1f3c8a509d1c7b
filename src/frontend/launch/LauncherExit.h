#pragma once

/// Exit codes of launcher.py that mean that no Windows program ran; any other code is the program's own.
namespace LauncherExit {

constexpr int NotStarted = -1;  ///< the script itself could not be started, or was killed

/// True when the code says that the launch ended before Wine took over. A program that itself ends with one
/// of the script's codes can't be told apart by the code alone.
bool isLaunchFailure(int exitCode);

}  // namespace LauncherExit
