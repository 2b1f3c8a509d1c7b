#include "launch/script/LauncherExit.h"

#include <QCoreApplication>
#include <algorithm>
#include <csignal>
#include <iterator>

namespace {

constexpr int SignalBase = 128;

const QByteArray Mark("launcher: ");
const QByteArray Failure("failed with ");
const QByteArray Cause("cause ");
const char Wine32Commands[] =
    "sudo dpkg --add-architecture i386 && sudo apt-get update\nsudo apt-get install wine32:i386";

struct CauseText {
    const char* cause;
    const char* text;  ///< %1 is the subject
};

constexpr CauseText CauseTexts[] = {
    {"no-bottle", QT_TRANSLATE_NOOP("ExeFileExecutor", "There is no bottle named \"%1\".")},
    {"no-entry",
     QT_TRANSLATE_NOOP("ExeFileExecutor",
                       "The program is not in its bottle any more. Add it to the library again.")},
    {"no-file", QT_TRANSLATE_NOOP("ExeFileExecutor", "The program \"%1\" does not exist.")},
    {"no-own-wine",
     QT_TRANSLATE_NOOP("ExeFileExecutor", "The Wine of its bottle is missing: %1 is not a program.")},
    {"no-wine", QT_TRANSLATE_NOOP("ExeFileExecutor", "Wine is not installed. Install the package wine.")},
    {"bottle-busy",
     QT_TRANSLATE_NOOP("ExeFileExecutor",
                       "The bottle is being packed or upgraded. Try again when that is done.")},
    {"not-startable", QT_TRANSLATE_NOOP("ExeFileExecutor", "Wine cannot be started: %1")},
    {LauncherExit::PackageRemoved,
     QT_TRANSLATE_NOOP("ExeFileExecutor",
                       "The program's files belonged to the package %1, which has been removed. Install the "
                       "package again, or remove what is left of the program.")},
    {"unreadable", QT_TRANSLATE_NOOP("ExeFileExecutor", "The program \"%1\" cannot be read.")},
};

/// Empty for an unknown cause; the script's message is shown then.
QString causeText(const LauncherExit::Report& report) {
    if (report.cause == "forbidden-sign")
        return QCoreApplication::translate(
                   "ExeFileExecutor",
                   "Rename \"%2\" without the sign %1 which Windows does not allow in paths.")
            .arg(report.subject.left(1), report.subject.mid(2));
    const auto* known =
        std::find_if(std::begin(CauseTexts), std::end(CauseTexts),
                     [&report](const CauseText& row) { return report.cause == QLatin1String(row.cause); });
    if (known == std::end(CauseTexts))
        return {};
    const QString text = QCoreApplication::translate("ExeFileExecutor", known->text);
    return text.contains("%1") ? text.arg(report.subject) : text;
}

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
        } else if (text.startsWith(Cause) && colon > 0) {
            report.cause = QString::fromUtf8(text.mid(Cause.size(), colon - Cause.size()));
            report.subject = QString::fromUtf8(text.mid(colon + 2));
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
            if (!report.cause.isEmpty())
                break;
            return QCoreApplication::translate("ExeFileExecutor",
                                               "Something is being installed into the bottle. Try again when "
                                               "that is done.");
        default:
            break;
    }
    const QString known = causeText(report);
    return known.isEmpty() ? report.reason : known;
}
