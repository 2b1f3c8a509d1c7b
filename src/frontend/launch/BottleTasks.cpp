#include "launch/BottleTasks.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QStandardPaths>

#include "backend/BottlesConfig.h"
#include "launch/WineLauncher.h"
#include "launch/records/AppBootingStateManager.h"

namespace BottleTasks {

namespace {

/// Goes when its program has ended.
WineLauncher* oneTimeLauncher(QWidget* parent, const QString& bottle) {
    auto* launcher = new WineLauncher(bottle, parent);
    QObject::connect(launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), launcher,
                     &QObject::deleteLater);
    QObject::connect(launcher, &QProcess::errorOccurred, launcher, [launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            launcher->deleteLater();
    });
    return launcher;
}

}  // namespace

void importRegistry(QWidget* parent, QString bottle) {
    const QString file = QFileDialog::getOpenFileName(
        parent, QString(), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
        QCoreApplication::translate("BottleTasks", "Import registry files (*.reg)"));
    if (file.isEmpty())
        return;
    if (file.contains('"')) {
        qWarning() << "Windows knows no file name with quotes:" << file;
        return;
    }
    oneTimeLauncher(nullptr, bottle)
        ->launchCommand("regedit.exe \"Z:" + QString(file).replace('/', '\\') + "\"");
}

void openInternetOptions(QWidget* parent, const QString& bottle) {
    oneTimeLauncher(parent, bottle)->launchExe("rundll32.exe", {"shell32.dll,Control_RunDLL", "inetcpl.cpl"});
}

void killWineServer(const QString& bottle) {
    AppBootingStateManager::instance()->cancelBottle(bottle);
    BottlesConfig::instance()->killWineServer(bottle);
}

}  // namespace BottleTasks
