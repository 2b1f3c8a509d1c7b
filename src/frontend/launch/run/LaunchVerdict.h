#pragma once

#include <QString>

/// What is known of a program that has ended, before anybody says what it means.
struct LaunchFacts {
    bool isConsole = false;       ///< runs in a terminal, so that nobody watched its windows
    bool isNotStarted = false;    ///< the launch script itself could not run or was killed
    bool windowSeen = false;      ///< by the monitor
    bool crashed = false;         ///< by the monitor
    bool installFailed = false;   ///< says the log
    bool autoFix = false;         ///< a repair may run without asking
    bool isFirstRun = true;       ///< of a file, not of a stored program
    bool hasComponents = false;   ///< that the log asks for and that were not tried yet
    bool hasFonts = false;        ///< the same
    bool stagingKnown = false;    ///< asked only when isFailed()
    bool hasOtherRepair = false;  ///< neither components, fonts nor staging, but something Repair can do
    bool hasTriedRepair = false;  ///< something was installed or switched in this run

    /// The program never came up. A terminal program counts as started whatever its exit code says; only one
    /// whose launch script did not run does not.
    bool neverCameUp() const { return isConsole ? isNotStarted : !windowSeen; }
    bool isFailed() const { return neverCameUp() || installFailed; }
};

/// What an ended program means.
struct LaunchVerdict {
    enum Next {
        Repair,     ///< at once
        Offer,      ///< runFailed(canWeFix, isSuccessed); the user may still repair
        Succeeded,  ///< final: runSuccessed()
        Failed      ///< final: runFailed(false, isSuccessed)
    };
    Next next = Failed;
    QString message;  ///< an ordinary line that goes ahead of the signal; empty for none
    bool canWeFix = false;
    bool isSuccessed = false;  ///< the program ran, and only fonts are missing

    static LaunchVerdict of(const LaunchFacts& facts);
    /// The line about the end itself.
    static QString endMessage(int exitCode, const LaunchFacts& facts);
    /// The line of a repair that had nothing to do, or came to nothing.
    static QString nothingFixedMessage(bool hasTriedRepair);
};
