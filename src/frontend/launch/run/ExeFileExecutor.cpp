#include "launch/run/ExeFileExecutor.h"

#include <QFileInfo>
#include <QtConcurrentRun>

#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceThreads.h"
#include "backend/SessionBus.h"
#include "backend/TemplateProgress.h"
#include "core/base/Paths.h"
#include "core/base/WineNames.h"
#include "fenk/style/Theme.h"
#include "launch/bottle/BottleChoice.h"
#include "launch/bottle/PrivateBottleName.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/inspection/ExeFileInfo.h"
#include "launch/inspection/ExeIconReader.h"
#include "launch/inspection/ProgramKind.h"
#include "launch/monitor/WineExeProcessMonitor.h"
#include "launch/records/ExecutorRecord.h"
#include "launch/repair/DependencyInstallQueue.h"
#include "launch/script/WineLauncher.h"

namespace {

const char LaunchDebugChannels[] =
    "WINEDEBUG=err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,warn+file";
constexpr int TickMs = 1000;
constexpr int TerminalWindowMs = 3000;
constexpr int SilenceMs = 75000;     // a launch script waits 60 s for an installation, and says so then
constexpr int CreationAttempts = 2;  // a service that died over the first one is started anew

}  // namespace

ExeFileExecutor::ExeFileExecutor(const QString& exePath, QObject* parent)
    : QObject(parent),
      m_exePath(exePath),
      m_monitor(new WineExeProcessMonitor),
      m_launcher(new WineLauncher(this)),
      m_queue(new DependencyInstallQueue),
      m_secondTimer(new QTimer(this)) {
    new ExecutorRecord(this);  // so that its table is there from the first launch on
    m_secondTimer->setInterval(TickMs);
    BottlesConfig::instance();  // lives in the thread of its first use, which must not be one of the pool
    inspect();
    m_watcher.setFuture(QtConcurrent::run(ServiceThreads::pool(), chooseBottle, exePath, m_peInfo, m_md5));
    connectParts();
}

/// Three tasks of the pool that overlap: what the file is (which takes longest and is not waited for), its
/// version block and its key. Those that have not begun when they are waited for run in this thread, so that
/// a busy pool holds nothing up.
void ExeFileExecutor::inspect() {
    if (m_exePath.isEmpty())
        return;
    m_checker = new ExeFileChecker(m_exePath);
    const QFuture<QString> key = QtConcurrent::run(partialFileMd5, m_exePath);
    m_peInfo = m_checker->versionBlock(&m_peInfoRead);
    m_md5 = key.result();
}

void ExeFileExecutor::connectParts() {
    connect(m_launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &ExeFileExecutor::onLauncherFinished);
    // Queued: a script that can't be started fails before start() returns, and whoever starts a launch needs
    // it to outlive that.
    qRegisterMetaType<QProcess::ProcessError>();
    connect(m_launcher, &QProcess::errorOccurred, this, &ExeFileExecutor::onLauncherError,
            Qt::QueuedConnection);
    connect(m_launcher, &QProcess::readyReadStandardOutput, this, [this] {
        if (m_silenceTimer.isActive())
            m_silenceTimer.start();
    });
    connect(m_monitor, &WineExeProcessMonitor::appStart, this, &ExeFileExecutor::onAppStart);
    connect(m_monitor, &WineExeProcessMonitor::appQuit, this, &ExeFileExecutor::onAppQuit);
    connect(m_monitor, &WineExeProcessMonitor::appLingers, this, &ExeFileExecutor::onAppLingers);
    connect(m_monitor, &WineExeProcessMonitor::processListUpdate, this, &ExeFileExecutor::onProcesses);
    // Its own receiver: the service's signals are taken off this object between two steps.
    connect(BottlesConfig::instance(), &BottlesConfig::endRequested, m_secondTimer,
            [this](const QString& bottle, const QString& program) { onEndRequested(bottle, program); });
    connect(m_secondTimer, &QTimer::timeout, this, &ExeFileExecutor::onTick);
    connect(new TemplateProgress(this), &TemplateProgress::preparing, this,
            &ExeFileExecutor::onTemplateProgress);
    connect(m_queue, &DependencyInstallQueue::emitMsg, this, &ExeFileExecutor::emitMsg);
    connect(m_queue, &DependencyInstallQueue::emitStep, this, &ExeFileExecutor::emitStep);
    connect(m_queue, &DependencyInstallQueue::failed, this,
            [this](const QString& component, const QString& reason) {
                m_failedComponents += component;
                Q_EMIT componentFailed(component, reason);
            });
    connect(m_queue, &DependencyInstallQueue::blocked, this, &ExeFileExecutor::askForPrograms);
    connect(m_queue, &DependencyInstallQueue::done, this, &ExeFileExecutor::onComponentsRepareDone);
    m_linksTimer.setSingleShot(true);
    connect(&m_linksTimer, &QTimer::timeout, this, [this] {
        qWarning() << "no answer about the links of" << m_bottlesName;
        report(m_verdict);
    });
    m_silenceTimer.setSingleShot(true);
    m_silenceTimer.setInterval(SilenceMs);
    connect(&m_silenceTimer, &QTimer::timeout, this, &ExeFileExecutor::onSilence);
    whenServiceIsLost(this, [this] { onServiceLost(); });
}

ExeFileExecutor::~ExeFileExecutor() {
    qDebug() << "ExeFileExecutor::~ExeFileExecutor()";
    m_launcher->disconnect(this);
    m_monitor->disconnect(this);
    m_queue->disconnect(this);
    m_queue->cancel();
    if (m_launcher->isOpen())
        m_launcher->close();
    if (m_monitor->isWatching())
        m_monitor->stop();
    m_launcher->deleteLater();
    m_monitor->deleteLater();
    if (m_checker)
        m_checker->deleteLater();
    m_queue->deleteLater();
}

QString ExeFileExecutor::bottlesName() {
    if (m_bottlesName.isEmpty())
        m_bottlesName = m_watcher.future().result();
    if (m_bottlesName.isEmpty())
        m_bottlesName = chooseBottle(m_exePath, peInfo(), md5());
    return m_bottlesName;
}

QIcon ExeFileExecutor::exeIcon() {
    if (!m_iconReader) {
        m_icon = Fenk::Theme::icon("cxb_app_default_icon");
        m_iconReader = new ExeIconReader(m_exePath, this);
        connect(m_iconReader, &ExeIconReader::ready, this, [this](const QIcon& icon) {
            m_icon = icon;
            Q_EMIT iconReady(icon);
        });
        m_iconReader->start();
    }
    return m_icon;
}

QString ExeFileExecutor::displayName() {
    if (!m_appName.isEmpty())
        return m_appName;
    const QString product = peInfo().value("ProductName").toString();
    return product.isEmpty() ? QFileInfo(m_exePath).fileName() : product;
}

bool ExeFileExecutor::isInstaller() {
    return m_checker && m_checker->isInstaller();
}

QJsonObject ExeFileExecutor::peInfo() {
    if (!m_peInfoRead && !m_exePath.isEmpty())
        m_peInfo = peVersionInfo(m_exePath, &m_peInfoRead);
    return m_peInfo;
}

QJsonObject ExeFileExecutor::fileInfo() {
    if (!m_checker)
        return {};
    return {{"peinfo", m_checker->info()}, {"verinfo", peInfo()}};
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
    Q_EMIT emitStep(tr("Initializing Envrironment"), MsgLine);
    if (!SessionBus::isConnected()) {
        m_finished = true;
        fail(false, false);
        return;
    }
    const QStringList bottles = BottlesConfig::instance()->list();
    qInfo().noquote() << "bottles name: " << bottlesName();
    m_appName = displayName();
    if (bottles.contains(bottlesName())) {
        launch();
        return;
    }
    if (!ProgramHeader::read(m_exePath).is32BitOnly()) {
        prepareBottle(WineNames::defaultRunner());
        return;
    }
    BottleRepair::instance()->runnersFor32Bit(this, [this](const BusResult& answer) {
        if (!m_isCancelled)
            prepareBottle(RunnerChoice::of(answer.object()).forNewBottle());
    });
}

void ExeFileExecutor::prepareBottle(const QString& runner) {
    m_runner = runner;
    Q_EMIT emitMsg(tr("Choose wine version: %1").arg(m_runner), MsgLine);
    // Another than the default is chosen only from what is installed.
    if (m_runner != WineNames::defaultRunner() ||
        ComponentManager::instance()->runnerInstalled.contains(m_runner))
        createBottle();
    else
        installRunner();
}

void ExeFileExecutor::installRunner() {
    Q_EMIT emitMsg(tr("%1 is not installing, try to download now").arg(m_runner), MsgLine);
    auto* manager = ComponentManager::instance();
    manager->disconnect(this);
    m_awaited = Awaited::Runner;
    manager->install(ComponentKind::runner(), m_runner, this, [this](const BusResult& answer) {
        if (answer.timedOut)
            return;  // a large download and a slow line; the signal, or the service's end, tells
        // The answer comes when all is done. The signal was there before, or never comes.
        const QString error = answer.ok ? answer.object().value("error").toString() : answer.errorMessage;
        const bool isGood = answer.object().value("ok").toBool();
        onWineInstalled(int(isGood), ComponentKind::runner(), m_runner, error);
        // The signal has no more than the service's English.
        const QString reason = isGood || m_isCancelled ? QString() : ServiceErrorText::of(answer.object());
        if (!reason.isEmpty())
            Q_EMIT emitMsg(reason, MsgError);
    });
    connect(manager, &ComponentManager::installed, this, &ExeFileExecutor::onWineInstalled);
    connect(manager, &ComponentManager::updateProgress, this, &ExeFileExecutor::onWineDownload);
}

void ExeFileExecutor::onWineDownload(const QString& componentType, const QString& componentName,
                                     uint received_size, uint total_size, const QString&) {
    if (componentType != ComponentKind::runner() || componentName != m_runner)
        return;
    const int percent = total_size == 0 ? 0 : qRound(qMin(1.0, double(received_size) / total_size) * 100);
    Q_EMIT emitMsg(tr("Downloading %1: %2%").arg(componentName, QString::number(percent)), MsgStatus);
}

void ExeFileExecutor::onWineInstalled(int success, const QString& componentType, const QString& componentName,
                                      const QString& errMsg) {
    if (m_awaited != Awaited::Runner || componentType != ComponentKind::runner() || componentName != m_runner)
        return;
    m_awaited = Awaited::Nothing;
    ComponentManager::instance()->disconnect(this);
    if (success) {
        Q_EMIT emitMsg(tr("%1 has downloaded").arg(componentName), MsgLine);
        qInfo().noquote() << componentName << "install success";
    } else {
        qWarning().noquote() << componentName << "install failed. using " << WineNames::defaultRunner()
                             << errMsg;
        Q_EMIT emitMsg(tr("Download failed, fallback to %1").arg(WineNames::defaultRunner()), MsgError);
        m_runner = WineNames::defaultRunner();
    }
    createBottle();
}

void ExeFileExecutor::createBottle() {
    BottlesConfig* config = BottlesConfig::instance();
    config->disconnect(this);
    Q_EMIT emitMsg(tr("Start initializing envrionment, please wait..."), MsgStatus);
    m_awaited = Awaited::Bottle;
    m_isBottleNew = true;
    requestBottle(CreationAttempts);
}

void ExeFileExecutor::requestBottle(int attempts) {
    BottlesConfig* config = BottlesConfig::instance();
    config->createBottles(m_bottlesName, m_runner);
    connect(config, &BottlesConfig::bottlesCreated, this,
            [this, config, attempts](const QString& bottle, const QJsonObject& result) {
                if (bottle != m_bottlesName)
                    return;
                config->disconnect(this);
                onBottleCreated(result, attempts);
            });
}

/// A failed creation goes on to a launch that fails by itself; what the service has said is its reason. A
/// service that says nothing has died or could not be reached.
void ExeFileExecutor::onBottleCreated(const QJsonObject& result, int attempts) {
    const QString error = ServiceErrorText::of(result);
    const bool isMade = result.value("ok").toBool();
    if (!isMade && error.isEmpty() && attempts > 1) {
        qWarning().noquote() << "the creation of" << m_bottlesName << "was interrupted; trying again";
        requestBottle(attempts - 1);
        return;
    }
    if (!isMade)
        m_startError =
            error.isEmpty() ? tr("The background service that makes containers does not answer.") : error;
    launch();
}

void ExeFileExecutor::onTemplateProgress(const QString& runner, int percent) {
    const bool isOurs = (m_awaited == Awaited::Bottle && runner == m_runner) ||
                        (m_awaited == Awaited::RunnerSwitch && runner == WineNames::stagingRunner());
    if (isOurs)
        Q_EMIT emitMsg(
            tr("The first run needs an environment, which takes about half a minute: %1%").arg(percent),
            MsgStatus);
}

void ExeFileExecutor::launchProgram(const QString& bottle, const QString& programUuid) {
    m_bottlesName = bottle;
    m_finished = false;
    qInfo() << "Launch via desktop file...";
    Q_EMIT emitStep(tr("Launching"), MsgLine);
    Q_EMIT emitMsg(tr("Launching %1").arg(m_appName), MsgStatus);
    m_programUuid = programUuid;
    m_seconds = 0;
    m_secondTimer->start();
    launch();
}

void ExeFileExecutor::launch() {
    if (m_isCancelled)
        return;
    qInfo() << "Launch exe file...";
    Q_EMIT emitStep(tr("Launching"), MsgLine);
    Q_EMIT emitMsg(tr("Launching %1").arg(displayName()), MsgStatus);
    m_awaited = Awaited::Nothing;
    m_linksTimer.stop();
    m_installFailed = m_hasHandedOver = m_isExitKnown = m_isEndedFromOutside = m_areLinksEntered =
        m_finished = false;
    ++m_starts;
    m_hasBeenSeen = m_hasComeUp = false;
    m_looks = 0;
    if (m_exePath.isEmpty() || ProgramHeader::read(m_exePath).is32BitOnly())
        BottleRepair::instance()->runnersFor32Bit(
            this, [this](const BusResult& answer) { m_runnersFor32Bit = RunnerChoice::of(answer.object()); });
    m_failure = {};
    closeLauncher();
    m_launcher->setBottle(m_bottlesName);
    const bool isConsole = m_checker && m_checker->isConsole();
    m_launcher->setCli(isConsole);
    if (isConsole) {
        launchInTerminal();
    } else {
        m_launcher->addEnvironment(LaunchDebugChannels);
        m_monitor->waitsForAll = isInstaller();
        m_monitor->start(m_bottlesName);
        m_silenceTimer.start();
    }
    m_seconds = 0;
    m_secondTimer->start();
    if (!m_programUuid.isEmpty())
        m_launcher->launchProgram(m_programUuid);
    else if (!m_exePath.isEmpty())
        m_launcher->launchExe(m_exePath, {});
}

/// The terminal's window is none of the program's, so that its coming up is taken for granted.
void ExeFileExecutor::launchInTerminal() {
    Q_EMIT emitMsg(tr("This application is a console application, launch in terminal"), MsgLine);
    const int start = m_starts;
    QTimer::singleShot(TerminalWindowMs, this, [this, start] {
        if (start == m_starts && m_secondTimer->isActive())
            Q_EMIT windowPopuped();
    });
}

void ExeFileExecutor::closeLauncher() {
    if (m_launcher->state() != QProcess::NotRunning) {
        const QSignalBlocker quiet(m_launcher);
        m_launcher->close();
    }
}
