#pragma once

#include <QString>

/// How launcher.py ends.
namespace LauncherExit {

constexpr int NotStarted = -1;  ///< the script itself could not be started, or was killed
constexpr int Busy = 75;        ///< something is being installed into the bottle
constexpr int NeedsWine32 = 78;

/// Why the script never reached the program: one sentence for the user, from the log of the launch. Empty
/// when the program was started, whatever code it has ended with itself.
QString failure(const QString& logPath, const QString& programName);

}  // namespace LauncherExit
