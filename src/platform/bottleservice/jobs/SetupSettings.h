#pragma once

#include <QStringList>

#include "bottleservice/bottles/BottleYaml.h"
#include "manifest/Manifest.h"

/// The settings of a bottle that is set up from a manifest.
namespace SetupSettings {

/// Enters the settings of a manifest and returns the change of the registry that they need. What this bottle
/// cannot have is left out and told in a warning.
RegistryChange apply(const Manifest& manifest, bool is64Bit, BottleYaml* settings, QStringList* warnings);

/// Enters those programs of the manifest that exist in the bottle at `path`.
void enterPrograms(const Manifest& manifest, const QString& path, BottleYaml* settings);

}  // namespace SetupSettings
