#include "launch/winelog/MissingFontsRule.h"

#include <QDebug>

bool MissingFontsRule::match(const QString& line) {
    fontName.clear();
    const QRegularExpressionMatch font = m_font.match(line);
    if (!font.hasMatch())
        return false;
    fontName = font.captured(1);
    qDebug() << line << "->"
             << "missing font:" << fontName;
    return true;
}

LogParseResult MissingFontsRule::result(const QString&) {
    return fontName.isEmpty() ? LogParseResult{} : LogParseResult{LogMissingFont, fontName};
}
