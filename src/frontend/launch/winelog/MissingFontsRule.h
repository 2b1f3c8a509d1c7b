#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// A font file was looked for in Windows' directory of fonts in vain.
class MissingFontsRule final : public LogParseRule {
public:
    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QString fontName;
    QRegularExpression m_font{R"rx(windows\\\\Fonts\\\\(.*ttf|.*ttc)" not found)rx",
                              QRegularExpression::CaseInsensitiveOption};
};
