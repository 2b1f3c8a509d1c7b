#pragma once

#include <QVector>

#include "launch/repair/FailureFacts.h"

class WineLogParser;

/// Looks for the known traces of failures in what the parser has kept of a log. Of very many lines only the
/// first and last thousand are read. A log is written by strangers: what is taken from it is short and of one
/// line.
namespace FailureSearch {

/// In the order of Failure, then of the log; each failure once for each name, at most 64.
QVector<FailureSign> signs(const WineLogParser& log);

}  // namespace FailureSearch
