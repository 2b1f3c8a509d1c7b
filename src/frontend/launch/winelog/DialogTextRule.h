#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// Finds drawn text, as in a message box, that asks the user to install something. In the log a non-ASCII
/// character is a backslash followed by four hexadecimal digits.
class DialogTextRule final : public LogParseRule {
public:
    static constexpr char Drawn[] = "trace:text:DrawTextExW L\"";

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QString text;
    QRegularExpression m_runtime{
        R"rx(The following component.*required.*Microsoft Visual C\+\+ Runtime.*)rx"};
    // Chinese for "must", "needs ... to run", "download" and "install".
    QRegularExpression m_request{R"rx(\\5fc5\\987b|\\9700\\8981.*\\8fd0\\884c|\\4e0b\\8f7d|\\5b89\\88c5)rx"};
};
