#pragma once

#include "launch/winelog/LogParseRule.h"

/// Finds programs that use a database. CommonRule reports another component for the same line; both are
/// needed.
class MissingODBCRule final : public LogParseRule {
public:
    bool match(const QString& line) override {
        return line.contains("fixme:msado15:recordset_supporterrorinfo_InterfaceSupportsErrorInfo");
    }
    LogParseResult result(const QString&) override { return {LogMissingComponent, "mdac28"}; }
};
