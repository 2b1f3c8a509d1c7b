#pragma once

#include <functional>

#include "shell/library/Program.h"

class QWidget;

/// The windows that the library leads to. Whoever makes one puts its opener here; while there is none, the
/// entries that lead to it are disabled and say so.
struct ShellWindows {
    using ForProgram = std::function<void(const ProgramRef& program, QWidget* over)>;

    std::function<void(const Program& program, QWidget* over)> properties;
    ForProgram configuration;
    ForProgram fileAssociations;
    ForProgram packaging;
    ForProgram manifestExport;
    ForProgram feedback;
    std::function<void(QWidget* over)> productFeedback;

    static ShellWindows& instance() {
        static ShellWindows windows;
        return windows;
    }
};
