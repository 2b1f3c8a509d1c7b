#pragma once

#include <memory>

#include "fenk/settings/Settings.h"

/// The program's settings: one store per process, created on first use from the description in the program's
/// resources. The values are in <AppConfigLocation>/settings.conf, so set the application's name before.
/// Never null. Main thread only. Callers need getOption, setOption and sync.
std::shared_ptr<Fenk::Settings> settingsStore();
