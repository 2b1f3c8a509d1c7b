#pragma once

#include "launch/winelog/LogParseRule.h"

/// Fixed parts of lines, each with what it means.
class CommonRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    LogParseResult current;
};
