#pragma once

#include <QString>
#include <QStringList>

/// Makes font files that a program looks for by name exist in a bottle.
namespace MissingFonts {

/// Stands in for every missing font: programs ask by file name only, and any font with Chinese glyphs serves.
QString replacementFile();

/// Links each name in the bottle's Windows font directory to replacementFile(). A name that exists stays as
/// it is; one that isn't a plain file name (names come from logs) is skipped with a warning.
void fix(const QString& bottlePath, const QStringList& fontFileNames);

}  // namespace MissingFonts
