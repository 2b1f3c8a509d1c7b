#pragma once

#include <QVector>

#include "launch/repair/FailureFacts.h"

class WineLogParser;

/// Searches the lines that the parser has kept for the known patterns. Of a long list only the first and the
/// last thousand lines are searched. Logs are untrusted: details are cut, and control characters are removed.
namespace FailureSearch {

/// Sorted by Failure, then by position in the log; each pair of failure and detail once, at most 64.
QVector<FailureSign> signs(const WineLogParser& log);

}  // namespace FailureSearch
