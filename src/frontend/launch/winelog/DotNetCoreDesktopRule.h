#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// Finds the version of a missing .NET runtime. The .NET Core host logs first that a runtime is missing and
/// some lines later which version, so this rule keeps state from line to line, and from one log to the next.
class DotNetCoreDesktopRule final : public LogParseRule {
public:
    static constexpr char Reported[] = "err:eventlog:ReportEventW";

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_install{Reported +
                                 QString(R"rx(.*You must install.*\.NET.*to run this application)rx")};
    QRegularExpression m_version{
        Reported +
        QString(R"rx(.*(?:App host version: |Framework: 'Microsoft\.NETCore\.App', version ')(\d+)\.*)rx")};
    bool waitingForVersion = false;
};
