#pragma once

#include <QString>

/// Sends all messages of the service to a daily rolling file in its data directory, and to standard error
/// where that is a terminal or the journal.
namespace ServiceLog {

void start(const QString& dataDir);

}  // namespace ServiceLog
