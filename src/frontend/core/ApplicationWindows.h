#pragma once

#include "launch/LaunchWindows.h"

/// The windows of the rooms above a launch and beside the library, which are told of them here. One that
/// ShellWindows has no opener for is not there: where one is asked for all the same, by a command line, the
/// user is told so, and the launch goes on.
class ApplicationWindows : public LaunchWindows {
public:
    ApplicationWindows();

    bool hasBottleConfig() const override;
    bool hasFeedback() const override;

    BottleConfigWindow* openBottleConfig(const QString& bottle, ConfigMode mode, QWidget* over) override;
    int askFeedback(const QString& bottle, const QString& appName, const QString& version,
                    QWidget* over) override;
};
