#pragma once

#include <QVector>

#include "launch/repair/FailureFacts.h"

/// The traces that failures leave in a log, as a table of fixed texts. Reads only the lines that the parser
/// has kept, and of very many only the first and last ones. A log is written by strangers: what is taken from
/// it is short and of one line.
namespace FailurePatterns {

/// In the order of Failure, each failure once for each name; at most 64.
QVector<FailureSign> find(const WineLogParser& log);

}  // namespace FailurePatterns
