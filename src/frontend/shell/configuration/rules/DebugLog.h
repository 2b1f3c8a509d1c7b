#pragma once

#include <QString>

/// What the log pane shows of the lines that a debugging run prints.
namespace DebugLog {

constexpr int MaxLines = 20000;  ///< that the pane keeps

enum class Kind { Dropped, Plain, Error };

/// Of a line without escape sequences.
Kind kindOf(const QString& line);

}  // namespace DebugLog
