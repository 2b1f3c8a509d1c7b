#pragma once

#include <QString>

/// What a line of Wine's log tells. Each is one bit, so that a whole log is their sum; callers and event
/// records know the numbers.
enum LogFinding {
    LogNoFinding = 1,
    LogMissingComponent = 2,  ///< value: name of a component
    LogMissingFont = 4,       ///< value: file name of a font
    LogMissingMono = 8,       ///< a .NET runtime is needed
    LogSetupApiError = 16,    ///< an installer has failed
    LogCrash = 32,
    LogBrokenSteamRuntime = 64,  ///< the wrapper around a Proton runner cannot load its libraries
    LogDebugSymbolError = 128,   ///< goes with a broken start
    LogMissingWinRT = 256,       ///< a Windows runtime class that Wine does not have
};

struct LogParseResult {
    int type = LogNoFinding;
    QString value;
};

/// One thing that is looked for in the lines of a log. A rule may keep state from line to line and belongs to
/// one parser; a copy shares the compiled expressions. Nobody deletes a rule through this class.
class LogParseRule {
public:
    virtual bool match(const QString& line) = 0;

    /// Only directly after match() was true for the same line.
    virtual LogParseResult result(const QString& line) = 0;

protected:
    ~LogParseRule() = default;
};
