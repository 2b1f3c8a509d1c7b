#pragma once

#include <QString>

/// Sends all messages of the service to standard error and to a daily rolling file in its data directory.
namespace ServiceLog {

void start(const QString& dataDir);

}  // namespace ServiceLog
