#include "shell/configuration/page/LaunchedConfigWindow.h"

#include "shell/configuration/page/BottlesConfigView.h"

LaunchedConfigWindow::LaunchedConfigWindow(BottlesConfigView* view) : BottleConfigWindow(view), m_view(view) {
    connect(view, &BottlesConfigView::closed, this, &BottleConfigWindow::closed);
}

BottleConfigWindow* LaunchedConfigWindow::open(const ProgramRef& program, LaunchWindows::ConfigMode mode,
                                               QWidget* over) {
    BottlesConfigView* view = BottlesConfigView::openWindowOf(program.bottle);
    const bool isNew = !view;
    if (isNew) {
        view = new BottlesConfigView;
        // No child of it: the window stays where the banner below hides, and dims nothing.
        if (over)
            connect(over, &QObject::destroyed, view, [view] { delete view; });
        view->loadBottle(program.bottle);
    }
    auto* window = new LaunchedConfigWindow(view);
    if (mode == LaunchWindows::ConfigMode::Debugging)
        view->explainFailure();
    view->show();
    view->raise();
    view->activateWindow();
    view->selectProgramById(program.uuid);
    return window;
}

void LaunchedConfigWindow::setLoading(bool loading) {
    m_view->setLoading(loading);
}

void LaunchedConfigWindow::selectProgram(const QString& exePath) {
    m_view->selectProgram(exePath);
}
