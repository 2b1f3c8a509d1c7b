#pragma once

#include <QByteArray>

#include "manifest/Manifest.h"

/// Writes a manifest as YAML. ManifestReader reads the same manifest from it, provided that it would accept
/// each value by itself. What was not given is left out.
namespace ManifestWriter {

QByteArray write(const Manifest& manifest);

}  // namespace ManifestWriter
