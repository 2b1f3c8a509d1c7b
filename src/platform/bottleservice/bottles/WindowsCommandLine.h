#pragma once

#include <QString>
#include <QStringList>

/// Splits a Windows command line into its arguments as Windows programs do.
namespace WindowsCommandLine {

/// Blanks and tabs separate arguments; quotes join. 2n backslashes before a quote are n backslashes, 2n+1 are
/// n and a literal quote. A quote that is not closed reaches to the end.
QStringList split(const QString& line);

}  // namespace WindowsCommandLine
