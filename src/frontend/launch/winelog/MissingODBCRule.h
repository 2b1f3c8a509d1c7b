#pragma once

#include "launch/winelog/LogParseRule.h"

/// A program talks to a database. CommonRule wants another component for the same line, and both are needed.
class MissingODBCRule final : public LogParseRule {
public:
    bool match(const QString& line) override {
        return line.contains("fixme:msado15:recordset_supporterrorinfo_InterfaceSupportsErrorInfo");
    }
    LogParseResult result(const QString&) override { return {LogMissingComponent, "mdac28"}; }
};
