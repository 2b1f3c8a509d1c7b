#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

/// The exit codes of launcher.py and the messages that it prints on standard output.
namespace LauncherExit {

constexpr int NotStarted = -1;  ///< the script could not be started, or was killed
constexpr int Busy = 75;        ///< something is being installed into the bottle
constexpr int NeedsWine32 = 78;

/// The cause that the program's files have gone with the package that they belonged to.
constexpr char PackageRemoved[] = "package-removed";

/// Whether the code is that of a program ended by a signal from outside, such as the hang-up of its terminal.
bool isEndedFromOutside(int exitCode);

/// The exit code of the script; if a signal ended the script, the code of a program ended by that signal.
int codeOf(const QProcess& script);

/// What the script has printed since its start.
struct Report {
    bool hasLog = false;  ///< the log has been truncated for this start
    int exitCode = 0;     ///< of a script that did not start the program; 0 otherwise
    QString reason;       ///< the script's message, in English
    QString cause;        ///< keyword of the failure; may be empty
    QString subject;      ///< the name or path that the cause is about
};

Report reportOf(const QByteArray& output);

/// Why the script did not start the program, translated. Empty if the program was started, whatever its exit
/// code.
QString errorText(const Report& report, const QString& programName);

/// The text for NeedsWine32, with Debian's commands on separate lines, or for `runner`, a runner that Repair
/// can switch the bottle to.
QString needs32BitText(const QString& programName, const QString& runner = {});

}  // namespace LauncherExit
