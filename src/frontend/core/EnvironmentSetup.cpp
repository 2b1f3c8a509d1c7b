#include "core/EnvironmentSetup.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

#include "environment/BottleEnvScript.h"
#include "environment/EnvInitBanner.h"
#include "fenk/window/Dialog.h"

namespace EnvironmentSetup {

bool refuses(const BottleEnvScript& script, const QStringList& positional) {
    if (!script.running || positional.isEmpty())
        return false;
    static QPointer<Fenk::Dialog> open;  // one for all refused starts
    if (open) {
        open->raise();
        open->activateWindow();
        return true;
    }
    Fenk::Dialog dialog(
        QCoreApplication::translate("CellarixApplication", "Cellarix is initializing envrionment"),
        QCoreApplication::translate("CellarixApplication",
                                    "It will take a few minutes, please wait patiently."));
    open = &dialog;
    dialog.setObjectName("env_initializing_dialog");
    dialog.setAttribute(Qt::WA_QuitOnClose, false);
    dialog.addButton(QCoreApplication::translate("CellarixApplication", "OK"), true,
                     Fenk::Dialog::ButtonRecommend);
    dialog.moveToCenter();
    dialog.exec();
    return true;
}

bool ensure(BottleEnvScript& script) {
    if (!script.needsRun())
        return false;
    script.start(false);
    return true;
}

void update(BottleEnvScript& script) {
    QVector<QPointer<QWindow>> hidden;
    const auto isBanner = [&script](const QWindow* window) {
        return script.banner && script.banner->windowHandle() == window;
    };
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (!window->isVisible() || isBanner(window))
            continue;
        hidden.append(window);
        window->hide();
    }
    script.start(true);
    if (script.running)
        return;
    for (const QPointer<QWindow>& window : qAsConst(hidden)) {
        if (window)
            window->show();
    }
}

}  // namespace EnvironmentSetup
