#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// Finds imports of DLLs that are not installed.
class MissingDLLRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_library{".*err:module:import_dll( loading)* library (.*) \\(which is needed.*",
                                 QRegularExpression::CaseInsensitiveOption};
};

/// Finds calls of functions that Wine's own DLL does not implement; the native DLL of a component implements
/// them.
class UnimplementedFunctionRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_abort{"wine:\\s+Call\\s+from.*unimplemented\\s+function.*aborting",
                               QRegularExpression::CaseInsensitiveOption};
    QRegularExpression m_dll{"unimplemented\\s+function\\s+(\\w+)\\.dll"};
};
