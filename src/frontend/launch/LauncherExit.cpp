#include "launch/LauncherExit.h"

#include <QCoreApplication>
#include <csignal>

namespace {

constexpr int SignalBase = 128;

const QByteArray Mark("launcher: ");
const QByteArray Failure("failed with ");
const char Wine32Commands[] =
    "sudo dpkg --add-architecture i386 && sudo apt-get update\nsudo apt-get install wine32:i386";

}  // namespace

bool LauncherExit::isEndedFromOutside(int exitCode) {
    return exitCode == SignalBase + SIGTERM || exitCode == SignalBase + SIGKILL ||
           exitCode == SignalBase + SIGINT || exitCode == SignalBase + SIGHUP;
}

int LauncherExit::codeOf(const QProcess& script) {
    return script.exitStatus() == QProcess::NormalExit ? script.exitCode() : SignalBase + script.exitCode();
}

LauncherExit::Report LauncherExit::reportOf(const QByteArray& output) {
    Report report;
    for (const QByteArray& line : output.split('\n')) {
        const QByteArray text = line.startsWith(Mark) ? line.mid(Mark.size()) : QByteArray();
        const int colon = text.indexOf(": ");
        if (text == "log") {
            report.hasLog = true;
        } else if (text.startsWith(Failure) && colon > 0) {
            report.exitCode = text.mid(Failure.size(), colon - Failure.size()).toInt();
            report.reason = QString::fromUtf8(text.mid(colon + 2));
        }
    }
    return report;
}

QString LauncherExit::needs32BitText(const QString& programName, const QString& runner) {
    if (runner.isEmpty())
        return QCoreApplication::translate("ExeFileExecutor",
                                           "%1 is a 32-bit program, and this Wine runs only 64-bit ones. "
                                           "These commands add 32-bit Wine on Debian:")
                   .arg(programName) +
               '\n' + Wine32Commands;
    return QCoreApplication::translate("ExeFileExecutor",
                                       "%1 is a 32-bit program, and this Wine runs only 64-bit ones. Repair "
                                       "gets %2, which runs both.")
        .arg(programName, runner);
}

QString LauncherExit::errorText(const Report& report, const QString& programName) {
    switch (report.exitCode) {
        case NeedsWine32:
            return needs32BitText(programName);
        case Busy:
            return QCoreApplication::translate("ExeFileExecutor",
                                               "Something is being installed into the bottle. Try again when "
                                               "that is done.");
        default:
            return report.reason;
    }
}
