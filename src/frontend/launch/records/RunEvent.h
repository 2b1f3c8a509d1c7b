#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

/// Builds the "run_exe" record of one start of a stored program.
namespace RunEvent {

/// `bootTime` is in seconds. Asks the service for the bottle, inspects the program unless it is in the
/// bottle's fileinfo.cache, and updates that file, so that the next start knows whether one succeeded before.
/// Blocks; call it in any thread. On an error the part concerned is empty.
QJsonObject build(const QString& bottleName, const QString& programId, bool successed, float bootTime,
                  const QDateTime& now, const QJsonObject& machine);

}  // namespace RunEvent
