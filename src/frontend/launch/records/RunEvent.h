#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

/// The record "run_exe" of one start of a stored program.
namespace RunEvent {

/// bootTime is in seconds. Asks the service, inspects a program that the bottle's fileinfo.cache does not
/// know yet, and writes the outcome there, so that the next start knows whether it is the first that comes
/// up. Waits for all that, on any thread; a failure leaves the part in question empty.
QJsonObject build(const QString& bottleName, const QString& programId, bool successed, float bootTime,
                  const QDateTime& now, const QJsonObject& machine);

}  // namespace RunEvent
