#pragma once

#include "shell/configuration/rules/SettingValues.h"

class BottleSettings;
class QWidget;

/// Asks over the window whether the programs that run in the bottle may be closed, so that the component can
/// be changed. The answer goes to the settings. A newer question about the component replaces the older one,
/// and one that nobody waits for any more goes. `appName` is the program or bottle that the window is about.
void askToClosePrograms(BottleSettings* settings, Setting component, const QStringList& programs,
                        const QString& appName, QWidget* window);
