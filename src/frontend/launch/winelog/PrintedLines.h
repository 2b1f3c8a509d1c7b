#pragma once

#include <QByteArray>
#include <QStringList>

/// The lines of a log that no debug channel wrote: what Wine, its server and the program itself print. From
/// the first and the last 64 KiB of the log, at most 200 of each.
QStringList printedLines(const QByteArray& log);
