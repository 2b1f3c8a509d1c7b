#include "launch/BottleTasks.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QStandardPaths>

#include "backend/BottlesConfig.h"
#include "launch/WineLauncher.h"
#include "launch/records/AppBootingStateManager.h"

namespace BottleTasks {

void importRegistry(QWidget* parent, const QString& bottle) {
    const QString file = QFileDialog::getOpenFileName(
        parent, QString(), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
        QCoreApplication::translate("BottleTasks", "Import registry files (*.reg)"));
    if (file.isEmpty())
        return;
    if (file.contains('"')) {
        qWarning() << "Windows knows no file name with quotes:" << file;
        return;
    }
    auto* launcher = new WineLauncher(bottle, parent);
    QObject::connect(launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), launcher,
                     &QObject::deleteLater);
    QObject::connect(launcher, &QProcess::errorOccurred, launcher, [launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            launcher->deleteLater();
    });
    launcher->launchCommand("regedit.exe \"Z:" + QString(file).replace('/', '\\') + "\"");
}

void killWineServer(const QString& bottle) {
    AppBootingStateManager::instance()->cancelBottle(bottle);
    BottlesConfig::instance()->killWineServer(bottle);
}

}  // namespace BottleTasks
