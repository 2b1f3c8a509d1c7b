#pragma once

#include "launch/winelog/LogParseRule.h"

/// Finds fixed substrings; each maps to one finding.
class CommonRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    LogParseResult current;
};
