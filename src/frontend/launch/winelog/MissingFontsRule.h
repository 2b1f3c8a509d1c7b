#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// Finds failed look-ups of font files in the Windows fonts directory.
class MissingFontsRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QString fontName;
    QRegularExpression m_font{R"rx(windows\\\\Fonts\\\\(.*ttf|.*ttc)" not found)rx",
                              QRegularExpression::CaseInsensitiveOption};
};
