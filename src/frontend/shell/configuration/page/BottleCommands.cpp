#include "shell/configuration/page/BottleCommands.h"

#include <QCoreApplication>
#include <QDebug>
#include <QPointer>
#include <QProcess>

#include "backend/BottleUtils.h"
#include "backend/BusResult.h"
#include "core/base/Paths.h"
#include "launch/run/BottleTasks.h"
#include "shell/configuration/page/BottlePrograms.h"

namespace {

using Failed = BottleCommand::Failed;

constexpr int NoTerminal = 66;  // exit codes of the launcher
constexpr int FirstRefusal = 64, LastRefusal = 78;

QString translated(const char* text) {
    return QCoreApplication::translate("BottleCommands", text);
}

void runTool(const ProgramRef& program, const QString& name, QObject* context, const Failed& failed) {
    BottleUtils::runCommand(program.bottle, name, context, [name, failed](const BusResult& answer) {
        if (answer.ok || answer.timedOut)
            return;
        qWarning().noquote() << "cannot run" << name << answer.errorMessage;
        failed(translated(QT_TRANSLATE_NOOP("BottleCommands", "%1 could not be started: %2"))
                   .arg(name, answer.errorText()));
    });
}

/// Empty when the terminal was opened; its shell may have ended with any code.
QString terminalError(bool hasStarted, int exitCode) {
    if (hasStarted && exitCode == NoTerminal)
        return translated(
            QT_TRANSLATE_NOOP("BottleCommands", "No terminal program is installed. Install xterm."));
    if (!hasStarted || (exitCode >= FirstRefusal && exitCode <= LastRefusal))
        return translated(QT_TRANSLATE_NOOP("BottleCommands", "The terminal could not be opened."));
    return {};
}

}  // namespace

QString BottleCommand::text() const {
    return translated(label);
}

void BottleCommand::start(BottlePrograms* programs, const ProgramRef& program) const {
    run(program, programs, [programs](const QString& errorText) { Q_EMIT programs->failed(errorText); });
}

const QVector<BottleCommand>& BottleCommands::all() {
    using Ref = const ProgramRef&;
    static const QVector<BottleCommand> commands{
        {QT_TRANSLATE_NOOP("BottleCommands", "Wine Configuration"),
         [](Ref program, QObject* context, const Failed& failed) {
             runTool(program, "winecfg.exe", context, failed);
         }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Registry Editor"),
         [](Ref program, QObject* context, const Failed& failed) {
             runTool(program, "regedit.exe", context, failed);
         }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Add/Remove Programs"),
         [](Ref program, QObject* context, const Failed& failed) {
             runTool(program, "uninstaller.exe", context, failed);
         }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Internet Settings"),
         [](Ref program, QObject*, const Failed&) { BottleTasks::openInternetOptions(program.bottle); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Open in terminal"),
         [](Ref program, QObject* context, const Failed& failed) {
             BottleCommands::openTerminal(program.bottle, context, failed);
         },
         false, true},
        {QT_TRANSLATE_NOOP("BottleCommands", "Task Manager"),
         [](Ref program, QObject* context, const Failed& failed) {
             runTool(program, "taskmgr.exe", context, failed);
         }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Open c-drive"),
         [](Ref program, QObject*, const Failed&) { BottleUtils::openDriveC(program.bottle); }},
        {QT_TRANSLATE_NOOP("BottleCommands", "Open folder of app"),
         [](Ref program, QObject*, const Failed&) {
             BottleUtils::openProgramFolder(program.bottle, program.uuid);
         },
         true},
        {QT_TRANSLATE_NOOP("BottleCommands", "Quit All Apps"),
         [](Ref program, QObject*, const Failed&) { BottleTasks::killWineServer(program.bottle); }},
    };
    return commands;
}

void BottleCommands::openTerminal(const QString& bottle, QObject* context, const Failed& failed) {
    auto* process = new QProcess(qApp);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    const auto end = [process, bottle, failed, taker = QPointer<QObject>(context)](bool started, int code) {
        const QString error = terminalError(started, code);
        if (!error.isEmpty())
            qWarning().noquote() << "no terminal for" << bottle << code << process->errorString();
        if (!error.isEmpty() && taker)
            failed(error);
        process->deleteLater();
    };
    QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
                     [end](int code) { end(true, code); });
    QObject::connect(process, &QProcess::errorOccurred, process, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end(false, -1);
    });
    process->start(Paths::launcherScript(), {"terminal", bottle});
}
