#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// A debugger or a crash reporter was started. The crash handler that programs built on a browser start each
/// time is none.
class FindCrashProcessRule final : public LogParseRule {
public:
    static constexpr char Started[] = "trace:process:NtCreateUserProcess ";

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_process{Started + QString(R"rx(.* image L"(.*)" cmdline L")rx")};
};
