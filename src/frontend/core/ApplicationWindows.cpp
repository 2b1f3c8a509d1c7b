#include "core/ApplicationWindows.h"

#include <QCoreApplication>
#include <QDebug>

#include "fenk/window/Dialog.h"

void ApplicationWindows::tellNoConfiguration(const QString& bottle) {
    const QString text = QCoreApplication::translate(
        "ApplicationWindows", "This version of Cellarix has no window yet to configure a bottle.");
    qInfo().noquote() << "no window yet for" << bottle << text;
    auto* dialog =
        new Fenk::Dialog(QCoreApplication::translate("ApplicationWindows", "Not in this version"), text);
    dialog->setObjectName("missing_window_dialog");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(QCoreApplication::translate("ApplicationWindows", "Close"), true);
    dialog->open();
}
