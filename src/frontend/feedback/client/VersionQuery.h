#pragma once

#include <functional>

#include "feedback/client/ReportAccess.h"

class QJsonObject;
class QObject;

/// The versions that a bottle's programs run with, as reports and ratings tell them.
namespace VersionQuery {

/// Whether Windows programs run in an emulator on such a processor.
bool needsEmulator(const QString& architecture);

/// Asks the background service, and the package manager where an emulator is needed; does not wait. The
/// handler also gets the bottle's record, which is empty when there is none. It is called in the thread of
/// context, unless that is destroyed first. GUI thread.
using Handler = std::function<void(const BottleVersions& versions, const QJsonObject& record)>;
void ask(const QString& bottleName, QObject* context, const Handler& handler);

}  // namespace VersionQuery
