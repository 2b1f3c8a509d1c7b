#pragma once

#include <QRandomGenerator>

#include "manifest/Manifest.h"

/// A manifest with random values in random keys that the reader accepts.
Manifest randomManifest(QRandomGenerator* random);
