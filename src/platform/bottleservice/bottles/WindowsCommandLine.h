#pragma once

#include <QString>
#include <QStringList>

/// Splits a Windows command line into its arguments by the rules that Windows programs themselves follow.
namespace WindowsCommandLine {

/// Blanks and tabs divide; quotes join; 2n backslashes before a quote are n, 2n+1 are n and a literal quote.
/// An open quote reaches to the end.
QStringList split(const QString& line);

}  // namespace WindowsCommandLine
