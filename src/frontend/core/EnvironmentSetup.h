#pragma once

#include <QStringList>

struct BottleEnvScript;

/// What a start does about the environment that all bottles stand on, before anything else.
namespace EnvironmentSetup {

/// Whether the script is at work and a start with these words has to be made again later, of which the user
/// is told.
bool refuses(const BottleEnvScript& script, const QStringList& positional);

/// Sets the environment up where it is needed, and tells whether it was. The script is still running
/// afterwards when the user has closed the banner before the end.
bool ensure(BottleEnvScript& script);

/// Sets the environment up, needed or not, with the windows of the program hidden meanwhile. They stay hidden
/// when the user has closed the banner before the end.
void update(BottleEnvScript& script);

}  // namespace EnvironmentSetup
