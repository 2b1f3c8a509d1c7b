#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "launch/repair/RepairAction.h"

class WineLogParser;

/// What can be wrong with a program under Wine, in the order in which it is told: what stands first is the
/// cause of what stands behind it. (No screen to draw on makes a program crash, never the other way round.)
enum class Failure {
    LauncherRefused,  ///< the launch script never reached the program
    MissingDll,       ///< detail: its file name
    UnimplementedFunction,
    Crash,
};

/// A trace of a failure in the log.
struct FailureSign {
    Failure failure;
    QString detail;     ///< a name from the log, short and of one line; empty where there is none
    QString component;  ///< that brings what is missing; empty where nobody has it
};

/// What is known of a launch that has failed, for Diagnosis::of. A stored program that nobody has watched is
/// described by its log alone: addLog() then fills all that there is.
struct FailureFacts {
    QString programName;
    int exitCode = 0;              ///< of the program, 0 to 255
    bool isExitCodeKnown = false;  ///< by whoever started the program
    bool windowSeen = false;
    bool crashed = false;
    QString launcherReason;  ///< why the launch script never reached the program, ready for the user
    int launcherExit = 0;    ///< its exit code then, one of LauncherExit

    QVector<FailureSign> signs;
    quint32 exceptionCode = 0;  ///< of the crash, 0 when it is not known

    QStringList components;  ///< that the log asks for and that were not tried yet
    QStringList fonts;       ///< the same
    QStringList triedComponents;
    QStringList triedFonts;

    /// What Repair could do in this bottle, apart from components and fonts.
    QVector<RepairAction> possible;

    /// Takes from a log that has been parsed what is found in it; `findings` is the parser's result. Asks for
    /// no components.
    void addLog(const WineLogParser& log, int findings);
};
