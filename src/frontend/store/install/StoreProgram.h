#pragma once

#include <QStringList>
#include <functional>

#include "backend/ProgramRef.h"

class QJsonObject;
class QObject;

namespace OpenAPI {
class VeskClientAppInfo;
}

/// Which installed program belongs to an application of the store.
namespace StoreProgram {

/// The bottle that a set-up of the application makes; empty without an id.
QString bottle(const QString& appIdText);

/// The bottles that may hold the application, the likeliest first. Empty for a record without a valid id.
QStringList bottles(const OpenAPI::VeskClientAppInfo& app);

/// The id of the first program with this name, or else of the first program. `programs` are a bottle's, by
/// their ids; the result is empty if there are none.
QString choose(const QJsonObject& programs, const QString& appName);

/// Looks the application's program up in the bottles. Returns at once; `take` is called once in the GUI
/// thread, with an empty reference if there is none, and never when the context is destroyed first. GUI
/// thread.
void find(const OpenAPI::VeskClientAppInfo& app, QObject* context,
          const std::function<void(const ProgramRef& program)>& take);
/// The same in these bottles.
void findIn(const QStringList& bottles, const QString& appName, QObject* context,
            const std::function<void(const ProgramRef& program)>& take);

}  // namespace StoreProgram
