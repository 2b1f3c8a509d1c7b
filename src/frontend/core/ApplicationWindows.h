#pragma once

#include "launch/LaunchWindows.h"

/// The windows of the rooms above a launch and beside the library, which are told of them here. Bottle
/// configuration and feedback have none yet: the user is told so, and the launch goes on.
class ApplicationWindows : public LaunchWindows {
public:
    ApplicationWindows();

    BottleConfigWindow* openBottleConfig(const QString& bottle, ConfigMode mode, QWidget* over) override;
    int askFeedback(const QString& bottle, const QString& appName, const QString& version,
                    QWidget* over) override;
};
