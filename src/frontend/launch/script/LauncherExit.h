#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

/// How launcher.py ends, and what it tells its caller on standard output meanwhile.
namespace LauncherExit {

constexpr int NotStarted = -1;  ///< the script itself could not be started, or was killed
constexpr int Busy = 75;        ///< something is being installed into the bottle
constexpr int NeedsWine32 = 78;

/// Of a program that somebody has ended by a signal, as when its terminal was closed.
bool isEndedFromOutside(int exitCode);

/// The script's own exit code; a signal that has ended it counts like one that has ended its program.
int codeOf(const QProcess& script);

/// What one start of the script has told so far.
struct Report {
    bool hasLog = false;  ///< the log holds nothing of an older start
    int exitCode = 0;     ///< of a script that never reached its program; 0 otherwise
    QString reason;       ///< in the script's own words, which are English
    QString cause;        ///< of the failure, a word; empty where the script has none for it
    QString subject;      ///< what the cause concerns, a name or path
};

Report reportOf(const QByteArray& output);

/// Why the script never reached the program: for the user. Empty when the program was started, whatever code
/// it has ended with itself.
QString errorText(const Report& report, const QString& programName);

/// The same for NeedsWine32, with Debian's commands on lines of their own. A runner is one that Repair can
/// let the program run on.
QString needs32BitText(const QString& programName, const QString& runner = {});

}  // namespace LauncherExit
