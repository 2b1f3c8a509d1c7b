#include "launch/script/WineLauncher.h"

#include <QDebug>
#include <QFileInfo>
#include <QStandardPaths>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "core/base/Paths.h"

namespace {

constexpr int MaximumOutput = 64 * 1024;  // bytes
constexpr int WindowClassLimit = 64;

const QString& launcherScript() {
    static const QString script = Paths::launcherScript();
    return script;
}

}  // namespace

WineLauncher::WineLauncher(QObject* parent) : QProcess(nullptr) {
    Q_UNUSED(parent)
    setProgram(launcherScript());
    setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Otherwise the desktop would attribute the program to the launcher that this program was started from.
    for (const QString& entry : QProcess::systemEnvironment()) {
        if (!entry.startsWith(QLatin1String("GIO_LAUNCHED_DESKTOP_FILE")))
            m_environment << entry;
    }
    addEnvironment("ATTACH_FILE_DIALOG=1");
}

WineLauncher::WineLauncher(const QString& bottle, QObject* parent) : WineLauncher(parent) {
    setBottle(bottle);
}

void WineLauncher::setBottle(const QString& bottle) {
    setBottle(bottle, BottlesConfig::instance()->get(bottle));
}

void WineLauncher::setBottle(const QString& bottle, const QJsonObject& record) {
    m_bottleName = bottle;
    m_programs = BottleRecord::programs(record);
    if (!m_logPath.isEmpty())
        return;
    const QString path = BottleRecord::path(record);
    if (path.isEmpty())
        qWarning().noquote() << "Bottle " << m_bottleName << " not exists";
    else
        m_logDir = BottleLogs::directory(path);
}

void WineLauncher::addEnvironment(const QString& entry) {
    m_environment << entry;
    setEnvironment(m_environment);
}

QStringList WineLauncher::commonOptions() {
    QStringList options;
    if (!m_logPath.isEmpty())
        options << "--log-path" << m_logPath;
    if (m_cli)
        options << "--cli";
    if (m_showLogs) {
        options << "--show-logs";
        setProcessChannelMode(QProcess::SeparateChannels);
        setReadChannel(QProcess::StandardError);
    }
    if (m_wait)
        options << "--wait";
    return options;
}

void WineLauncher::addWindowClass(const QString& name) {
    if (name.size() <= WindowClassLimit) {
        addEnvironment("WINE_WMCLASS=" + name);
        return;
    }
    const bool inPair = name.at(WindowClassLimit - 1).isHighSurrogate();
    addEnvironment("WINE_WMCLASS=" + name.left(inPair ? WindowClassLimit - 1 : WindowClassLimit) + "...");
}

void WineLauncher::startScript(const QString& what, const QStringList& arguments) {
    m_output.clear();
    setArguments(arguments);
    qInfo() << "launching " << what << arguments << "Logs write to: " << m_logPath;
    start(QIODevice::ReadWrite);
}

LauncherExit::Report WineLauncher::report() {
    m_output = (m_output + readAllStandardOutput()).left(MaximumOutput);
    return LauncherExit::reportOf(m_output);
}

void WineLauncher::launchProgram(const QString& programUuid) {
    m_logPath = m_logDir + "/" + BottleLogs::programFile(programUuid);
    const QStringList arguments =
        QStringList{m_bottleName} + commonOptions() + QStringList{"--uuid", programUuid};

    const QJsonObject entry = m_programs.value(programUuid).toObject();
    if (entry.isEmpty())
        qWarning().noquote() << "program " << programUuid << " not in bottles: " << m_bottleName;

    const QString desktopFile =
        QStandardPaths::writableLocation(QStandardPaths::DesktopLocation) + "/" + programUuid + ".desktop";
    if (QFileInfo(desktopFile).isFile()) {
        addEnvironment("GIO_LAUNCHED_DESKTOP_FILE=" + desktopFile);
        qInfo() << "add GIO_LAUNCHED_DESKTOP_FILE to " << desktopFile;
    }
    addWindowClass(entry.value("name").toString());
    startScript(programUuid, arguments);
}

void WineLauncher::launchExe(const QString& exePath, const QStringList& args) {
    const QString fileName = QFileInfo(exePath).fileName();
    if (m_logPath.isEmpty())
        m_logPath = m_logDir + "/" + BottleLogs::exeFile(fileName);
    const QStringList arguments = QStringList{m_bottleName} + commonOptions() + QStringList{exePath} + args;
    addWindowClass(fileName);
    startScript(exePath, arguments);
}

void WineLauncher::launchCommand(const QString& command) {
    if (m_bottleName.isEmpty()) {
        qWarning() << "No bottle selected";
        return;
    }
    startScript(command, {m_bottleName, command});
}
