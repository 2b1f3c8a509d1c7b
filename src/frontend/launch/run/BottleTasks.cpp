#include "launch/run/BottleTasks.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QStandardPaths>

#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/script/WineLauncher.h"
#include "widgets/FileChoice.h"

namespace BottleTasks {

namespace {

/// Goes when its program has ended. Ready once the service has told of the bottle.
void withLauncher(const QString& bottle, const std::function<void(WineLauncher*)>& launch) {
    auto* launcher = new WineLauncher(qApp);
    QObject::connect(launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), launcher,
                     &QObject::deleteLater);
    QObject::connect(launcher, &QProcess::errorOccurred, launcher, [launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            launcher->deleteLater();
    });
    const PendingWork::Hold hold = PendingWork::instance()->hold();
    BottlesConfig::instance()->watchBottle(bottle, launcher,
                                           [launcher, bottle, launch, hold](const BusResult& record) {
                                               launcher->setBottle(bottle, record.object());
                                               launch(launcher);
                                           });
}

void importRegistryFile(const QString& bottle, const QString& file) {
    if (file.contains('"')) {
        qWarning() << "Windows knows no file name with quotes:" << file;
        return;
    }
    const QString command = "regedit.exe \"Z:" + QString(file).replace('/', '\\') + "\"";
    withLauncher(bottle, [command](WineLauncher* launcher) { launcher->launchCommand(command); });
}

}  // namespace

void importRegistry(QWidget* parent, QString bottle) {
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Registry, parent, QString(),
                         QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
                         QCoreApplication::translate("BottleTasks", "Import registry files (*.reg)"));
    dialog->setObjectName("import_registry_dialog");
    QObject::connect(dialog, &QFileDialog::fileSelected, qApp,
                     [bottle](const QString& file) { importRegistryFile(bottle, file); });
    dialog->open();
}

void openInternetOptions(const QString& bottle) {
    withLauncher(bottle, [](WineLauncher* launcher) {
        launcher->launchExe("rundll32.exe", {"shell32.dll,Control_RunDLL", "inetcpl.cpl"});
    });
}

void killWineServer(const QString& bottle, QObject* context, const std::function<void()>& ended) {
    AppBootingStateManager::instance()->cancelBottle(bottle);
    BottlesConfig::instance()->killWineServer(bottle, context, [ended](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "cannot end the programs of a bottle:" << answer.errorMessage;
        ended();
    });
}

}  // namespace BottleTasks
