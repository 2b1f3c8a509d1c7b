#pragma once

#include <QStringList>

struct BottleEnvScript;

/// Sets up the environment that all bottles need (BottleEnvScript), at the beginning of a start. GUI thread;
/// each function may run an event loop until the user closes a window.
namespace EnvironmentSetup {

/// Returns true when the script is running and there are positional arguments: the user has been told to
/// start again later.
bool refuses(const BottleEnvScript& script, const QStringList& positional);

/// Sets up the environment if that is needed; returns whether it was. The script is still running afterwards
/// when the user has closed the banner before the end.
bool ensure(BottleEnvScript& script);

/// Sets up the environment in any case and hides the other windows meanwhile. They stay hidden when the user
/// has closed the banner before the end.
void update(BottleEnvScript& script);

}  // namespace EnvironmentSetup
