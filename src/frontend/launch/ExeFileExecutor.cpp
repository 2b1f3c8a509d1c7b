#include "launch/ExeFileExecutor.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>
#include <QtConcurrent>

#include "backend/BottlesConfig.h"
#include "core/base/Paths.h"
#include "core/base/ToolProcess.h"
#include "core/base/WineNames.h"
#include "fenk/Theme.h"
#include "launch/LauncherExit.h"
#include "launch/PrivateBottleName.h"
#include "launch/WineLauncher.h"
#include "launch/inspection/ExeFileInfo.h"

namespace {

const char LaunchDebugChannels[] =
    "WINEDEBUG=err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,warn+file";
const char ExeIconDir[] = "/tmp/exeicons";

/// Runs on a pool thread: works on values only, so that the launch may be gone before the answer comes.
QString bottleFor(const QString& exePath, const QJsonObject& peInfo, const QString& md5) {
    const QString fileName = QFileInfo(exePath).fileName();
    const QJsonObject question{{"filename", fileName}, {"peinfo", peInfo}, {"md5sum", md5}};
    const BusResult reply = BottlesConfig::instance()->checkPublicBottles(
        QString::fromUtf8(QJsonDocument(question).toJson(QJsonDocument::Compact)));
    if (!reply.ok)
        qWarning().noquote() << "checkPublicBottles failed: " << reply.errorMessage;
    if (reply.ok && !reply.text.isEmpty()) {
        qInfo().noquote() << "Using public bottles: " << reply.text;
        return reply.text;
    }
    return privateBottleName(fileName, md5);
}

}  // namespace

ExeFileExecutor::ExeFileExecutor(const QString& exePath, QObject* parent)
    : QObject(parent), m_exePath(exePath), m_launcher(new WineLauncher(this)) {
    m_secondTimer.setInterval(1000);
    connect(&m_secondTimer, &QTimer::timeout, this, &ExeFileExecutor::onTick);
    connect(m_launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &ExeFileExecutor::onLauncherFinished);
    // Queued: a script that can't be started fails before start() returns, and whoever starts a launch needs
    // it to outlive that.
    qRegisterMetaType<QProcess::ProcessError>();
    connect(m_launcher, &QProcess::errorOccurred, this, &ExeFileExecutor::onLauncherError,
            Qt::QueuedConnection);
    if (exePath.isEmpty())
        return;
    // Each takes up to seconds on a large file, so they overlap.
    const QFuture<QJsonObject> info = QtConcurrent::run(peVersionInfo, exePath);
    const QFuture<QString> key = QtConcurrent::run(partialFileMd5, exePath);
    m_peInfo = info.result();
    m_md5 = key.result();
    m_watcher.setFuture(QtConcurrent::run(bottleFor, exePath, m_peInfo, m_md5));
}

ExeFileExecutor::~ExeFileExecutor() {
    qDebug() << "ExeFileExecutor::~ExeFileExecutor()";
    m_launcher->disconnect(this);
    // Ends the script only: the Windows program is ended by killWineServer, never by the loss of its watcher.
    if (m_launcher->isOpen())
        m_launcher->close();
    m_launcher->deleteLater();
}

QString ExeFileExecutor::bottlesName() {
    if (m_bottlesName.isEmpty())
        chooseBottle();
    return m_bottlesName;
}

void ExeFileExecutor::chooseBottle() {
    if (m_exePath.isEmpty()) {
        qWarning() << "exe path is empty, donothing";
        return;
    }
    m_bottlesName = m_watcher.future().result();
}

QIcon ExeFileExecutor::exeIcon() {
    const QString fileName = QFileInfo(m_exePath).fileName();
    ToolProcess::run(Paths::iconExtractorScript(), {"--no-convert", m_exePath, fileName, ExeIconDir},
                     ToolProcess::NoTimeLimit);
    const QString icon = QString(ExeIconDir) + "/" + fileName;
    return QFileInfo(icon).isFile() ? QIcon(icon) : Fenk::Theme::icon("cxb_app_default_icon");
}

QString ExeFileExecutor::displayName() {
    if (!m_appName.isEmpty())
        return m_appName;
    const QString product = peInfo().value("ProductName").toString();
    return product.isEmpty() ? QFileInfo(m_exePath).fileName() : product;
}

QJsonObject ExeFileExecutor::peInfo() {
    if (m_peInfo.isEmpty() && !m_exePath.isEmpty())
        m_peInfo = peVersionInfo(m_exePath);
    return m_peInfo;
}

QString ExeFileExecutor::md5() {
    if (m_md5.isEmpty() && !m_exePath.isEmpty())
        m_md5 = partialFileMd5(m_exePath);
    return m_md5;
}

void ExeFileExecutor::onTick() {
    if (m_appName.isEmpty())
        return;
    ++m_seconds;
    Q_EMIT emitMsg(tr("Launching %1 in %2 seconds").arg(m_appName, QString::number(m_seconds)), MsgStatus);
}

void ExeFileExecutor::start() {
    if (!QFileInfo(m_exePath).isReadable()) {
        qWarning().noquote() << m_exePath + " is not readable, exit...";
        return;
    }
    Q_EMIT emitStep(tr("Initializing Envrionment"), MsgLine);
    const QStringList bottles = BottlesConfig::instance()->list();
    qInfo().noquote() << "bottles name: " << bottlesName();
    m_appName = displayName();
    if (bottles.contains(bottlesName())) {
        launch();
        return;
    }
    m_runner = WineNames::defaultRunner();
    Q_EMIT emitMsg(tr("Choose wine version: %1").arg(m_runner), MsgLine);
    createBottle();
}

void ExeFileExecutor::createBottle() {
    BottlesConfig* config = BottlesConfig::instance();
    config->disconnect(this);
    Q_EMIT emitMsg(tr("Start initializing envrionment, please wait..."), MsgStatus);
    // A failed creation goes on to a launch that fails by itself and says why.
    connect(config, &BottlesConfig::bottlesCreated, this, [this, config](const QString& bottle) {
        if (bottle != m_bottlesName)
            return;
        config->disconnect(this);
        launch();
    });
    config->createBottles(m_bottlesName, m_runner);
}

void ExeFileExecutor::launchProgram(const QString& bottle, const QString& programUuid) {
    m_bottlesName = bottle;
    m_finished = false;
    qInfo() << "Launch via desktop file...";
    Q_EMIT emitStep(tr("Launching"), MsgLine);
    Q_EMIT emitMsg(tr("Launching %1").arg(m_appName), MsgStatus);
    m_programUuid = programUuid;
    m_seconds = 0;
    m_secondTimer.start();
    m_launchFailed = false;
    launch();
}

void ExeFileExecutor::launch() {
    qInfo() << "Launch exe file...";
    Q_EMIT emitStep(tr("Launching"), MsgLine);
    Q_EMIT emitMsg(tr("Launching %1").arg(displayName()), MsgStatus);
    m_launchFailed = false;
    m_finished = false;
    m_launcher->setBottle(m_bottlesName);
    m_launcher->addEnvironment(LaunchDebugChannels);
    m_seconds = 0;
    m_secondTimer.start();
    if (!m_programUuid.isEmpty())
        m_launcher->launchProgram(m_programUuid);
    else if (!m_exePath.isEmpty())
        m_launcher->launchExe(m_exePath, {});
}

void ExeFileExecutor::onLauncherFinished(int exitCode, QProcess::ExitStatus status) {
    if (m_launcher->state() == QProcess::Running)
        return;
    qInfo() << "============ app finished ============";
    onExeFinished(status == QProcess::NormalExit ? exitCode : LauncherExit::NotStarted);
}

void ExeFileExecutor::onLauncherError(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart)
        return;
    qWarning() << "cannot start" << m_launcher->program() << m_launcher->errorString();
    onExeFinished(LauncherExit::NotStarted);
}

void ExeFileExecutor::onExeFinished(int exitCode) {
    if (!m_secondTimer.isActive()) {
        qInfo() << "app finished event is processing";
        return;
    }
    qInfo() << "exe finished: " << exitCode;
    m_secondTimer.stop();
    m_launchFailed = LauncherExit::isLaunchFailure(exitCode);
    if (m_launchFailed)
        qInfo() << "Launch failed";
    const QString suffix = m_launchFailed ? tr(", and app not been launched") : QString();
    Q_EMIT emitMsg(
        tr("Seems application has finished, exit code: %1%2").arg(QString::number(exitCode), suffix),
        MsgLine);
    if (m_finished)
        return;
    m_finished = true;
    if (m_launchFailed) {
        Q_EMIT emitMsg(tr("No any fixing applied, launch failed"), MsgLine);
        Q_EMIT runFailed(false, false);
    } else {
        Q_EMIT emitMsg(tr("No any fixing applied, but seems app not crashed"), MsgLine);
        Q_EMIT runSuccessed();
    }
}
