#pragma once

#include <QByteArray>
#include <QStringList>

/// In the line that Wine prints when a program crashes.
inline constexpr char CrashPrinted[] = "starting debugger...";

/// Returns the lines that come from no debug channel: output of Wine, wineserver and the program itself.
/// Reads the first and the last 64 KiB of the log and returns at most 200 lines of each.
QStringList printedLines(const QByteArray& log);
