#include "core/ApplicationWindows.h"

#include "launch/LaunchWindows.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"

void ApplicationWindows::setOpeners() {
    LaunchWindows::instance().configuration = &LaunchedConfigWindow::open;
}
