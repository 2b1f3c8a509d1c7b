#include "core/ApplicationWindows.h"

#include <QPointer>

#include "backend/InBackground.h"
#include "environment/BottleEnvScript.h"
#include "launch/LaunchWindows.h"
#include "packaging/AppConfigDialog.h"
#include "packaging/manifest/ExportYamlDialog.h"
#include "shell/configuration/page/LaunchedConfigWindow.h"

namespace {

/// The check may take long; the set-up itself runs an event loop until its window is closed, which the user
/// may do before the script has ended.
void prepareProton(QObject* context, const std::function<void()>& then) {
    inBackground(
        context, [] { return protonInitScript().needsRun(); },
        [alive = QPointer<QObject>(context), then](bool needsRun) {
            if (needsRun)
                protonInitScript().start(true);
            if (alive)
                protonInitScript().whenEnded(alive, then);
        });
}

}  // namespace

void ApplicationWindows::setOpeners() {
    LaunchWindows& windows = LaunchWindows::instance();
    windows.prepareProton = &prepareProton;
    windows.configuration = &LaunchedConfigWindow::open;
    windows.manifestExport = &ExportYamlDialog::openFor;
    windows.packaging = &AppConfigDialog::openFor;
}
