#pragma once

#include <QString>

/// What a debugging run asks Wine to print, and what of that the log pane shows.
namespace DebugLog {

enum class Kind { Dropped, Plain, Error };

/// Of a line without escape sequences.
Kind kindOf(const QString& line);

/// The value of WINEDEBUG. `channels` is what the user has chosen; empty for the usual ones.
QString channels(const QString& channels, const QString& runner);

}  // namespace DebugLog
