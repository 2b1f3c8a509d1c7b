#include "core/CommandLineHandler.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThreadPool>

#include "core/BackendVersion.h"
#include "core/CellarixApplication.h"
#include "core/CommandLineOptions.h"
#include "core/EnvironmentSetup.h"
#include "core/LaunchTarget.h"
#include "core/base/BuildInfo.h"
#include "core/base/Paths.h"
#include "core/base/ToolProcess.h"
#include "environment/BottleEnvScript.h"
#include "fenk/window/Dialog.h"
#include "launch/open/WineFileHandler.h"

namespace {

ScannedExecutable scannedExecutable(const QJsonObject& object) {
    ScannedExecutable found;
    found.peInfo = object.value("pe_info").toObject();
    found.name = found.peInfo.value("FileDescription").toString();
    if (found.name.isEmpty())
        found.name = found.peInfo.value("ProductName").toString();
    found.path = object.value("path").toString();
    found.hasIcon = object.value("hasIcon").toBool();
    found.iconPath = object.value("iconPath").toString();
    return found;
}

}  // namespace

CommandLineHandler::CommandLineHandler(CellarixApplication* application)
    : QObject(application), m_application(application) {
    CommandLineOptions::fill(m_parser);
}

int CommandLineHandler::handleCommandLine(const QStringList& args) {
    if (!checkClientUpgrade())
        return 1;
    if (args.isEmpty())
        parseOwnArguments();
    else if (!m_parser.parse(args))
        qWarning().noquote() << m_parser.errorText();
    if (!m_application->checkServiceAgreement())
        return 1;
    if (m_parser.isSet(CommandLineOptions::Service)) {
        m_service = true;
        return 0;
    }
    const QStringList positional = m_parser.positionalArguments();
    if (checkEnvironment(positional))
        return 1;
    if (m_parser.isSet(CommandLineOptions::Update)) {
        m_update = true;
        return handleUpdateCommand();
    }
    if (positional.isEmpty()) {
        m_application->showMainWindow();
        return 0;
    }
    if (m_parser.isSet(CommandLineOptions::Fixup))
        return handleFixupCommand(positional);
    if (m_parser.isSet(CommandLineOptions::Open))
        return handleOpenCommand(positional);
    return m_parser.isSet(CommandLineOptions::Debug) ? handleDebugUrl(positional.first())
                                                     : handleUrl(positional.first());
}

/// Exits after printing when help or version is asked for or an option is unknown.
void CommandLineHandler::parseOwnArguments() {
    const bool parsed = m_parser.parse(QCoreApplication::arguments());
    // The exit closes the bus connection, which would hang while a call waits on it.
    if (!parsed || m_parser.isSet("help") || m_parser.isSet("version")) {
        abandonBackendVersion();
        QThreadPool::globalInstance()->waitForDone();
    }
    m_parser.process(*QCoreApplication::instance());
}

bool CommandLineHandler::checkClientUpgrade() {
    if (!BuildInfo::isRelease())
        return true;
    QFile info(Paths::infoFile());
    if (!info.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    const QString installed = QJsonDocument::fromJson(info.readAll()).object().value("version").toString();
    if (installed.isEmpty() || installed == BuildInfo::version())
        return true;
    qInfo().noquote() << "Client version dismatch, installed version: " << installed
                      << ", current Running: " << BuildInfo::version();
    Fenk::Dialog dialog;
    dialog.setObjectName("client_upgrade_dialog");
    dialog.setTitle(tr("Cellarix has upgrade"));
    dialog.setMessage(tr("Are you want to quit current running version?"));
    dialog.addButton(tr("Cancel"));
    dialog.addButton(tr("Quit"), true, Fenk::Dialog::ButtonRecommend);
    if (dialog.exec() == 1) {
        QGuiApplication::setQuitOnLastWindowClosed(true);
        // Queued, so that it also works before the event loop runs.
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
    }
    return true;
}

/// Returns true when the start must not go on.
bool CommandLineHandler::checkEnvironment(const QStringList& positional) {
    BottleEnvScript& script = envInitScript();
    if (EnvironmentSetup::refuses(script, positional))
        return true;
    if (!EnvironmentSetup::ensure(script))
        return false;
    if (script.running) {
        m_application->leaveAfter(script);
        return true;
    }
    m_application->showMainWindow();
    return false;
}

bool CommandLineHandler::refuseForNow(const QStringList& args) {
    QCommandLineParser parser;
    CommandLineOptions::fill(parser);
    return parser.parse(args) && !parser.isSet(CommandLineOptions::Service) &&
           EnvironmentSetup::refuses(envInitScript(), parser.positionalArguments());
}

int CommandLineHandler::handleUpdateCommand() {
    BottleEnvScript& script = envInitScript();
    EnvironmentSetup::update(script);
    m_application->leaveAfter(script);
    return 0;
}

int CommandLineHandler::handleFixupCommand(const QStringList& positional) {
    if (positional.size() < 3) {
        qWarning() << "Invalid fixup arguments, need at least bottlesName and programUuid";
        return 1;
    }
    const QString bottle = positional.at(0);
    const QString uuid = positional.at(1);
    const QStringList components = positional.mid(2);
    if (components.isEmpty()) {
        qWarning() << "No components specified for fixup";
        return 1;
    }
    if (m_application->isProgramRunning(bottle)) {
        qWarning() << "The program is already running, skip fixup";
        return 1;
    }
    return m_application->repairProgram(bottle, uuid, components);
}

int CommandLineHandler::handleOpenCommand(const QStringList& positional) {
    qDebug() << "handleOpenCommand" << positional;
    if (positional.size() < 2) {
        qWarning() << "Invalid open arguments, eg: cellarix --open bottlesName [extension] filePath";
        return 1;
    }
    if (m_application->refusals().refusesWithoutBus())
        return 1;
    const OpenTarget target = OpenTarget::fromWords(positional);
    if (positional.size() == 2)
        qDebug() << "opening extension:" << target.extension;
    m_application->admitOtherStarts();
    auto* handler = new WineFileHandler(target.bottle, target.extension, target.file);
    const int result = handler->open();
    handler->deleteLater();
    return result == -1 ? 1 : 0;
}

int CommandLineHandler::handleDebugUrl(const QString& url) {
    const LaunchTarget target = LaunchTarget::fromDebugUrl(url);
    if (target.kind == LaunchTarget::Invalid) {
        qWarning() << "Invalid url:" << url;
        return 1;
    }
    if (target.kind != LaunchTarget::Executable) {
        qWarning() << "Not a Windows program:" << url;
        m_application->refusals().refuseOther(target.path.isEmpty() ? url : target.path);
        return 1;
    }
    m_application->openExe(target.path, true);
    return 0;
}

int CommandLineHandler::handleUrl(const QString& url) {
    const LaunchTarget target = LaunchTarget::fromUrl(url);
    switch (target.kind) {
        case LaunchTarget::Invalid:
            qWarning() << "Invalid url:" << url;
            return 1;
        case LaunchTarget::StoredProgram:
            return m_application->openProgram(target.bottle, target.uuid);
        case LaunchTarget::Executable:
            m_application->openExe(target.path, false);
            return 0;
        case LaunchTarget::PackageFile:
            qInfo() << "open cxb file:" << target.path;
            return 1;
        case LaunchTarget::Missing:
            qWarning() << "No such file:" << url;
            m_application->refusals().refuseOther(url);
            return 1;
        case LaunchTarget::OtherFile:
            if (m_application->takeChosenBatchFile(url)) {
                m_application->openExe(target.path, false);
                return 0;
            }
            qWarning() << "Not a Windows program:" << target.path;
            m_application->refusals().refuseOther(target.path);
            return 1;
    }
    return 1;
}

QVector<ScannedExecutable> CommandLineHandler::scanExecutables(const QString& directory,
                                                               const QString& output) {
    const ToolProcess::Result result =
        ToolProcess::run(Paths::exeScannerScript(), {directory, output}, ToolProcess::NoTimeLimit);
    QVector<ScannedExecutable> found;
    for (const QJsonValue& value : QJsonDocument::fromJson(result.standardOutput).array())
        found << scannedExecutable(value.toObject());
    return found;
}
