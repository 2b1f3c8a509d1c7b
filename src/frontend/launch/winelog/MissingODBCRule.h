#pragma once

#include "launch/winelog/LogParseRule.h"

/// Finds programs that use a database. CommonRule reports another component for the same line; both are
/// needed.
class MissingODBCRule final : public LogParseRule {
public:
    static constexpr char Database[] = "fixme:msado15:recordset_supporterrorinfo_InterfaceSupportsErrorInfo";

    bool match(const QString& line) override { return line.contains(Database); }
    LogParseResult result(const QString&) override { return {LogMissingComponent, "mdac28"}; }
};
