#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// A DLL that a program imports does not exist.
class MissingDLLRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_library{".*err:module:import_dll( loading)* library (.*) \\(which is needed.*",
                                 QRegularExpression::CaseInsensitiveOption};
};

/// A DLL of Wine's own lacks a function; a native one from a component has it.
class UnimplementedFunctionRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_abort{"wine:\\s+Call\\s+from.*unimplemented\\s+function.*aborting",
                               QRegularExpression::CaseInsensitiveOption};
    QRegularExpression m_dll{"unimplemented\\s+function\\s+(\\w+)\\.dll"};
};
