#include "shell/configuration/page/BottleCommands.h"

#include <QCoreApplication>
#include <QDebug>
#include <QProcess>

#include "backend/BottleUtils.h"
#include "core/base/Paths.h"
#include "launch/run/BottleTasks.h"

QString BottleCommand::text() const {
    return QCoreApplication::translate("BottleCommands", label);
}

const QVector<BottleCommand>& BottleCommands::all() {
    using Ref = const ProgramRef&;
    static const QVector<BottleCommand> commands{
        {QT_TRANSLATE_NOOP("BottleCommands", "Wine Configuration"),
         [](Ref program) { BottleUtils::runCommand(program.bottle, "winecfg.exe"); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Registry Editor"),
         [](Ref program) { BottleUtils::runCommand(program.bottle, "regedit.exe"); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Add/Remove Programs"),
         [](Ref program) { BottleUtils::runCommand(program.bottle, "uninstaller.exe"); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Internet Settings"),
         [](Ref program) { BottleTasks::openInternetOptions(program.bottle); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Open in terminal"),
         [](Ref program) { BottleCommands::openTerminal(program.bottle); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Task Manager"),
         [](Ref program) { BottleUtils::runCommand(program.bottle, "taskmgr.exe"); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Open c-drive"),
         [](Ref program) { BottleUtils::openDriveC(program.bottle); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Open folder of app"),
         [](Ref program) { BottleUtils::openProgramFolder(program.bottle, program.uuid); }, true},
        {QT_TRANSLATE_NOOP("BottleCommands", "Quit All Apps"),
         [](Ref program) { BottleTasks::killWineServer(program.bottle); }},
    };
    return commands;
}

void BottleCommands::openTerminal(const QString& bottle) {
    auto* process = new QProcess(qApp);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
                     &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [process, bottle](QProcess::ProcessError error) {
                         qWarning().noquote() << "no terminal for" << bottle << process->errorString();
                         if (error == QProcess::FailedToStart)
                             process->deleteLater();
                     });
    process->start(Paths::launcherScript(), {"terminal", bottle});
}
