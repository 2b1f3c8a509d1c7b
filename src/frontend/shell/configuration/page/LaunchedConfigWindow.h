#pragma once

#include "launch/LaunchWindows.h"

class BottlesConfigView;

/// The configuration window as a launch sees it. Lives as long as the window.
class LaunchedConfigWindow : public BottleConfigWindow {
    Q_OBJECT
public:
    /// Opens the window of the program's bottle, or brings it to the front. A new one goes with `over`.
    static BottleConfigWindow* open(const ProgramRef& program, LaunchWindows::ConfigMode mode, QWidget* over);

    void setLoading(bool loading) override;
    void selectProgram(const QString& exePath) override;

private:
    explicit LaunchedConfigWindow(BottlesConfigView* view);

    BottlesConfigView* m_view;
};
