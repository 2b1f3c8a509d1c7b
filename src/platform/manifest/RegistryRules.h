#pragma once

#include <QString>

/// Which values of a bottle's registry a manifest may set. Wine and Windows programs start programs, load
/// code and set the environment of native programs from some keys; what a manifest runs stands in its
/// Commands, which users see beforehand. Rules about the text alone.
namespace RegistryRules {

/// Why the value is refused, as the end of a sentence that begins with the key; empty if it is not. `key`
/// begins with the full name of a hive.
QString fault(const QString& key, const QString& name);

}  // namespace RegistryRules
