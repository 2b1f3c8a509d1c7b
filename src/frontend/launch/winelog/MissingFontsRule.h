#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// Finds failed look-ups of font files in the Windows fonts directory.
class MissingFontsRule final : public LogParseRule {
public:
    static constexpr char Folder[] = R"(\\font)";  ///< the beginning, in any case of the letters

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QString fontName;
    QRegularExpression m_font{
        QString(R"rx(windows%1s\\\\(.*ttf|.*ttc)" not found)rx").arg(QRegularExpression::escape(Folder)),
        QRegularExpression::CaseInsensitiveOption};
};
