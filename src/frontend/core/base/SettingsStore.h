#pragma once

#include <memory>

#include "fenk/settings/Settings.h"

/// The program's settings, one store per process, made on first use from the description that the program
/// carries. The values lie in <AppConfigLocation>/settings.conf, so the application's name must be set
/// before. Never null. For the main thread; getOption, setOption and sync are what callers need.
std::shared_ptr<Fenk::Settings> settingsStore();
