#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// A .NET Core host tells first that a runtime is needed and some lines later which version. A parser
/// that reads several logs keeps the state from one to the next.
class DotNetCoreDesktopRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_install{
        R"rx(err:eventlog:ReportEventW.*You must install.*\.NET.*to run this application)rx"};
    QRegularExpression m_version{
        R"rx(err:eventlog:ReportEventW.*(?:App host version: |Framework: 'Microsoft\.NETCore\.App', version ')(\d+)\.*)rx"};
    bool waitingForVersion = false;
};
