#pragma once

#include <functional>

#include "launch/LaunchWindows.h"
#include "programs/Program.h"

class QWidget;

/// The windows and pages that the library and a launch's banner lead to. Whoever makes one puts its opener
/// here; while there is none, the entries and buttons that lead to it are hidden.
struct ShellWindows {
    using ForProgram = std::function<void(const ProgramRef& program, QWidget* over)>;

    std::function<void(const Program& program, QWidget* over)> properties;
    ForProgram configuration;
    ForProgram fileAssociations;
    ForProgram packaging;
    ForProgram manifestExport;
    ForProgram feedback;
    std::function<void(QWidget* over)> productFeedback;
    std::function<QWidget*()> storePage;
    std::function<BottleConfigWindow*(const QString& bottle, LaunchWindows::ConfigMode, QWidget* over)>
        launchConfiguration;
    std::function<int(const QString& bottle, const QString& appName, const QString& version, QWidget* over)>
        launchFeedback;
    std::function<void(const Program& program, QWidget* over)> rename;
    /// Shows the launch banner of a program that has failed: it offers to install the components, or starts
    /// the program and watches it when there are none.
    std::function<void(const ProgramRef& program, const QStringList& components)> repair;

    static ShellWindows& instance() {
        static ShellWindows windows;
        return windows;
    }
};
