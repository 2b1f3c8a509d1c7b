#pragma once

#include <functional>

class QObject;

/// The container in which Proton runners run their programs; a service of the session.
namespace SteamRuntime {

/// Asks the container to end itself. Does not wait; `then` gets whether it answered, unless `context` is
/// destroyed first.
void terminate(QObject* context, const std::function<void(bool ended)>& then);

}  // namespace SteamRuntime
