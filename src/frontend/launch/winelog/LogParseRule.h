#pragma once

#include <QString>

/// What a line of a Wine log reports. Each value is one bit; the findings of a log are combined with |. The
/// numbers are part of event records.
enum LogFinding {
    LogNoFinding = 1,
    LogMissingComponent = 2,  ///< value: name of a component
    LogMissingFont = 4,       ///< value: file name of a font
    LogMissingMono = 8,       ///< a .NET runtime is needed
    LogSetupApiError = 16,    ///< an installer failed
    LogCrash = 32,
    LogBrokenSteamRuntime = 64,  ///< the wrapper around a Proton runner cannot load its libraries
    LogDebugSymbolError = 128,   ///< occurs together with a broken start
    LogMissingWinRT = 256,       ///< a Windows Runtime class that Wine does not have
};

struct LogParseResult {
    int type = LogNoFinding;
    QString value;
};

/// Base of the rules that search log lines. A rule may keep state from line to line and belongs to one
/// parser; copies share the compiled expressions. Never deleted through this class.
class LogParseRule {
public:
    virtual bool match(const QString& line) = 0;

    /// Call only directly after match() returned true for the same line.
    virtual LogParseResult result(const QString& line) = 0;

protected:
    ~LogParseRule() = default;
};
