#include "core/ApplicationWindows.h"

#include <QCoreApplication>
#include <QDebug>

#include "fenk/window/Dialog.h"
#include "programs/ShellWindows.h"
#include "shell/associations/FileAssosiationsExportDialog.h"
#include "shell/properties/AppPropertyDlg.h"

namespace {

void tellMissing(const QString& what, const QString& bottle, QWidget* over) {
    qInfo().noquote() << "no window yet for" << bottle << what;
    auto* dialog = new Fenk::Dialog(QCoreApplication::translate("ApplicationWindows", "Not in this version"),
                                    what, over && over->isVisible() ? over : nullptr);
    dialog->setObjectName("missing_window_dialog");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(QCoreApplication::translate("ApplicationWindows", "Close"), true);
    dialog->open();
}

}  // namespace

ApplicationWindows::ApplicationWindows() {
    ShellWindows& windows = ShellWindows::instance();
    windows.properties = &AppPropertyDlg::openFor;
    windows.rename = &AppPropertyDlg::openForRename;
    windows.fileAssociations = &FileAssosiationsExportDialog::openFor;
}

bool ApplicationWindows::hasBottleConfig() const {
    return bool(ShellWindows::instance().launchConfiguration);
}

bool ApplicationWindows::hasFeedback() const {
    return bool(ShellWindows::instance().launchFeedback);
}

BottleConfigWindow* ApplicationWindows::openBottleConfig(const QString& bottle, ConfigMode mode,
                                                         QWidget* over) {
    if (const auto& open = ShellWindows::instance().launchConfiguration)
        return open(bottle, mode, over);
    tellMissing(
        QCoreApplication::translate("ApplicationWindows",
                                    "This version of Cellarix has no window yet to configure a bottle."),
        bottle, over);
    return nullptr;
}

int ApplicationWindows::askFeedback(const QString& bottle, const QString& appName, const QString& version,
                                    QWidget* over) {
    if (const auto& ask = ShellWindows::instance().launchFeedback)
        return ask(bottle, appName, version, over);
    tellMissing(QCoreApplication::translate("ApplicationWindows",
                                            "This version of Cellarix cannot send feedback yet."),
                bottle, over);
    return 0;
}
