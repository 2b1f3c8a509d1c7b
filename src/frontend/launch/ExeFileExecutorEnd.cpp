// The second half of ExeFileExecutor: from the end of the program to the result or the repair.
#include <QFileInfo>
#include <QJsonDocument>
#include <algorithm>
#include <utility>

#include "backend/BottleRecord.h"
#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/MissingFonts.h"
#include "backend/PendingWork.h"
#include "backend/ServiceErrorText.h"
#include "backend/SessionBus.h"
#include "core/base/WineNames.h"
#include "launch/BottleTasks.h"
#include "launch/DependencyInstallQueue.h"
#include "launch/ExeFileExecutor.h"
#include "launch/LauncherExit.h"
#include "launch/LogFindings.h"
#include "launch/WineLauncher.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/monitor/WineExeProcessMonitor.h"
#include "launch/repair/BottleDamage.h"
#include "launch/repair/RenewBottleStep.h"
#include "launch/repair/Runner32Step.h"
#include "launch/winelog/WineLogParser.h"

namespace {

constexpr int LinksMs = 10000;
constexpr int SecondLookMs = 1000;
constexpr int MaximumLooks = 6;  // of five cycles each

bool isStagingKnown() {
    return ComponentManager::instance()->knownRunners().contains(WineNames::stagingRunner());
}

}  // namespace

void ExeFileExecutor::onAppStart() {
    qInfo() << "============ app start ============";
    Q_EMIT windowPopuped();
}

void ExeFileExecutor::onAppQuit() {
    qInfo() << "============ app exit ============";
    qInfo().noquote() << "isCrashed? " << (m_monitor->crashed ? "true" : "false");
    if (m_hasBeenSeen || m_launcher->state() == QProcess::NotRunning || m_looks >= MaximumLooks) {
        onExeFinished(m_hasHandedOver ? m_exitCode : 0);
        return;
    }
    // The monitor gave up before there was anything to see, and the program has not ended: the machine is
    // slow. A bottle that is being ended takes the script along within that second.
    const int start = m_starts;
    QTimer::singleShot(SecondLookMs, this, [this, start] {
        if (start != m_starts || !m_secondTimer->isActive() || m_launcher->state() == QProcess::NotRunning)
            return;
        qInfo() << "no process yet; looking again";
        ++m_looks;
        m_monitor->start(m_bottlesName);
    });
}

void ExeFileExecutor::onAppLingers() {
    qInfo().noquote() << "the set-up in" << m_bottlesName << "goes on without a window";
    enterLinks();
    Q_EMIT lingers();
}

void ExeFileExecutor::onLauncherFinished(int exitCode, QProcess::ExitStatus status) {
    if (m_launcher->state() == QProcess::Running)
        return;
    qInfo() << "============ app finished ============";
    // Most installers and launchers start another process and go, all is well, before there is a window; and
    // set-ups do so at any time. The monitor tells what becomes of it, and always comes to an end.
    const bool isExit = status == QProcess::NormalExit;
    m_exitCode = exitCode;
    m_isExitKnown = isExit;
    m_hasHandedOver =
        isExit && m_monitor->isWatching() && (m_monitor->windowSeen ? isInstaller() : exitCode == 0);
    if (!m_hasHandedOver)
        onExeFinished(isExit ? exitCode : LauncherExit::NotStarted);
}

/// When Wine's server dies while others start, they wait for it for ever, the program and the monitor alike.
void ExeFileExecutor::onSilence() {
    qWarning().noquote() << "nothing was heard of" << m_bottlesName << "for long; Wine seems to hang";
    m_failure.isSilent = true;
    onExeFinished(0);
}

/// Nothing was left behind: sooner known here than to the monitor, which allows for a slow start.
void ExeFileExecutor::onProcesses(const QMap<QString, QString>& processes) {
    m_hasBeenSeen = m_hasBeenSeen || !processes.isEmpty();
    if (m_silenceTimer.isActive())
        m_silenceTimer.start();
    if (m_hasHandedOver && processes.isEmpty() && !m_monitor->windowSeen)
        onExeFinished(m_exitCode);
    else if (m_hasHandedOver && m_monitor->waitsForAll && m_monitor->windowSeen && !processes.isEmpty())
        enterLinks();
}

void ExeFileExecutor::onLauncherError(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart)
        return;
    qWarning() << "cannot start" << m_launcher->program() << m_launcher->errorString();
    m_startError = tr("The launch script cannot be started. Install Cellarix anew.");
    onExeFinished(LauncherExit::NotStarted);
}

void ExeFileExecutor::onExeFinished(int exitCode) {
    if (!m_secondTimer->isActive()) {
        qInfo() << "app finished event is processing";
        return;
    }
    qInfo() << "exe finished: " << exitCode;
    m_secondTimer->stop();
    m_silenceTimer.stop();
    m_hasHandedOver = false;
    if (m_monitor->isWatching())
        m_monitor->stop();
    m_script = m_launcher->report();
    m_failure.launcherReason = m_script.hasLog || m_startError.isEmpty()
                                   ? LauncherExit::errorText(m_script, displayName())
                                   : m_startError;
    m_startError.clear();
    LaunchFacts found = facts(exitCode);
    if (found.isFailed())
        qInfo() << "Launch failed";
    if (WineNames::isPublicBottle(m_bottlesName)) {
        m_autoFix = true;
        // What was tried goes away here too, or a repair that does not help would come again and again.
        for (const QString& tried : m_triedComponents)
            m_components.removeAll(tried);
    } else {
        readLog(m_script.hasLog);
    }
    Q_EMIT emitMsg(LaunchVerdict::endMessage(exitCode, found), MsgLine);
    if (found.neverCameUp() && m_failure.launcherReason.isEmpty() &&
        !WineNames::isPublicBottle(m_bottlesName))
        lookForDamage(exitCode);
    else
        decide(exitCode);
}

/// A damaged bottle lets any program fail in whatever way.
void ExeFileExecutor::lookForDamage(int exitCode) {
    const int start = m_starts;
    BottleRepair::instance()->damage(m_bottlesName, this, [this, exitCode, start](const BusResult& answer) {
        if (m_isCancelled || start != m_starts)
            return;
        const BottleDamage damage{answer.object().value("count").toInt(),
                                  answer.object().value("files").toVariant().toStringList()};
        const auto isDamage = [](const FailureSign& sign) { return sign.failure == Failure::DamagedBottle; };
        QVector<FailureSign>& signs = m_failure.signs;
        if (damage.isCause(std::any_of(signs.cbegin(), signs.cend(), isDamage))) {
            qWarning().noquote() << damage.count << "files of Windows are damaged in" << m_bottlesName
                                 << damage.files.mid(0, 5).join(' ');
            signs.prepend({Failure::DamagedBottle, damage.worst(), {}});
            m_failure.possible.append(RepairAction::RenewBottle);
            m_components.clear();  // what such a bottle lacks is not known before it is whole
            m_fonts.clear();
        }
        decide(exitCode);
    });
}

void ExeFileExecutor::decide(int exitCode) {
    LaunchFacts found = facts(exitCode);
    found.stagingKnown = found.isFailed() && m_failure.launcherReason.isEmpty() && isStagingKnown();
    diagnose(exitCode, found);
    found.hasOtherRepair = isOtherRepair(m_diagnosis.action);
    carryOut(LaunchVerdict::of(found));
}

LaunchFacts ExeFileExecutor::facts(int exitCode) {
    LaunchFacts facts;
    facts.isConsole = m_checker && m_checker->isConsole();
    facts.isNotStarted = exitCode == LauncherExit::NotStarted;
    facts.windowSeen = m_monitor->windowSeen;
    facts.crashed = m_monitor->crashed;
    facts.installFailed = m_installFailed;
    facts.autoFix = m_autoFix;
    facts.isFirstRun = m_firstRun != 0;
    facts.hasComponents = !m_components.isEmpty();
    facts.hasFonts = !m_fonts.isEmpty();
    facts.hasTriedRepair = hasTriedRepair();
    facts.finished = m_finished;
    return facts;
}

/// What Repair would do is told along with the reason, so that both are decided here, once for each end.
void ExeFileExecutor::diagnose(int exitCode, const LaunchFacts& found) {
    m_failure.exitCode = exitCode;
    m_failure.isExitCodeKnown = m_isExitKnown;
    m_failure.isPackage = QStringList{"msi", "msp"}.contains(QFileInfo(m_exePath).suffix().toLower());
    m_failure.seconds = m_seconds;
    m_failure.windowSeen = found.windowSeen;
    m_failure.crashed = m_failure.crashed || found.crashed;
    m_failure.components = m_components;
    m_failure.fonts = m_fonts;
    m_failure.triedComponents = m_triedComponents;
    m_failure.triedFonts = m_triedFonts;
    addPossibleRepairs();
    if (found.stagingKnown && found.isFirstRun && !m_autoFix)
        m_failure.possible.append(RepairAction::SwitchToStaging);
    m_diagnosis = Diagnosis::of(m_failure);
}

void ExeFileExecutor::addPossibleRepairs() {
    const QString runner = m_runnersFor32Bit.forRepair();
    const auto is32Bit = [](const FailureSign& sign) { return sign.failure == Failure::Needs32Bit; };
    const bool isMeant = m_script.exitCode == LauncherExit::NeedsWine32 ||
                         std::any_of(m_failure.signs.cbegin(), m_failure.signs.cend(), is32Bit);
    if (isMeant && !runner.isEmpty() && !WineNames::isPublicBottle(m_bottlesName) &&
        !m_triedRepairs.contains(RepairAction::InstallWow64Runner))
        m_failure.possible.append(RepairAction::InstallWow64Runner);
    if (m_script.exitCode != LauncherExit::NeedsWine32 || m_failure.possible.isEmpty())
        return;
    // The other way stays in the logs, to be copied from there.
    Q_EMIT emitMsg(m_failure.launcherReason, MsgError);
    m_failure.launcherReason = LauncherExit::needs32BitText(displayName(), runner);
}

/// Without a log of this start nothing is found: what lies there is an older one's.
void ExeFileExecutor::readLog(bool hasLog) {
    Q_EMIT emitMsg(tr("Parsing wine logs and fix application"), MsgLine);
    WineLogParser parser;
    const int mask = hasLog ? parser.parseFile(m_launcher->logPath()) : 0;
    LogFindings::Asked asked;
    asked.isFirstRun = m_firstRun != 0;
    asked.autoFix = m_autoFix;
    if (m_checker) {
        asked.dotnetVersion = m_checker->dotnetVersion;
        asked.requiredComponent = m_checker->requiredComponent();
    }
    asked.triedComponents = m_triedComponents;
    asked.triedFonts = m_triedFonts;
    const LogFindings found = LogFindings::of(parser, mask, asked);
    m_failure.addLog(parser, mask);
    if (found.crashed)
        qInfo().noquote() << "Seems app crashed! " << m_exePath;
    if (found.installFailed)
        qInfo().noquote() << "Seems app install failed! " << m_exePath;
    for (const LaunchMessage& message : found.messages)
        Q_EMIT emitMsg(message.text, message.type);
    m_installFailed = found.installFailed;
    m_components = found.components;
    m_fonts = found.fonts;
    // What the parser does not ask for is offered only where nothing else explains the failure.
    m_failure.triedComponents = m_triedComponents;
    if (!m_components.isEmpty() || !asked.isFirstRun || !facts(m_exitCode).neverCameUp())
        return;
    m_components = m_failure.missingComponents();
    if (!m_components.isEmpty()) {
        Q_EMIT emitMsg(tr("Try to install components:"), MsgLine);
        Q_EMIT emitMsg(m_components.join('\n'), MsgLine);
    }
}

void ExeFileExecutor::carryOut(const LaunchVerdict& verdict) {
    m_verdict = verdict;
    if (verdict.next == LaunchVerdict::Repair) {
        applyFix();
    } else if (verdict.next != LaunchVerdict::Nothing) {
        m_finished = m_finished || verdict.isFinal();
        collectLinks();
    }
}

/// What a set-up has installed so far. It may have started a program that the user keeps open for hours.
void ExeFileExecutor::enterLinks() {
    if (std::exchange(m_areLinksEntered, true))
        return;
    BottlesConfig::instance()->watchApplicationLinks(m_bottlesName, m_since, this, [](const BusResult&) {});
}

/// Wine's own maker of menu entries is switched off in the bottles. The service enters what shortcuts the
/// program has made, before the result or the offer goes out, since what is told depends on whether there are
/// any.
void ExeFileExecutor::collectLinks() {
    m_linksTimer.start(LinksMs);
    const int start = m_starts;
    BottlesConfig::instance()->watchApplicationLinks(
        m_bottlesName, m_since, this, [this, start](const BusResult& answer) {
            if (!answer.ok)
                qWarning().noquote() << "no links of" << m_bottlesName << answer.errorMessage;
            if (start != m_starts || !m_linksTimer.isActive())
                return;
            m_linksTimer.stop();
            report(m_verdict);
        });
}

void ExeFileExecutor::report(const LaunchVerdict& verdict) {
    const LaunchVerdict told = verdict;  // who hears of it may start anew
    if (!told.message.isEmpty())
        Q_EMIT emitMsg(told.message, MsgLine);
    if (told.next == LaunchVerdict::Succeeded)
        Q_EMIT runSuccessed();
    else
        fail(told.canWeFix, told.isSuccessed);
}

/// The reason is the last line of a failed launch, so that it stays in view.
void ExeFileExecutor::fail(bool canWeFix, bool isSuccessed) {
    // Whatever was found is a consequence of it, and no repair is possible.
    if (!SessionBus::isConnected()) {
        qWarning() << "no session bus";
        canWeFix = false;
        m_diagnosis = {SessionBus::missingText(), RepairAction::None};
    }
    if (!m_diagnosis.reason.isEmpty())
        Q_EMIT emitMsg(m_diagnosis.reason, MsgLine);
    Q_EMIT runFailed(canWeFix, isSuccessed);
}

void ExeFileExecutor::prepareFix(const QString& bottle, const QString& programUuid,
                                 const QStringList& components) {
    m_bottlesName = bottle;
    m_programUuid = programUuid;
    m_autoFix = true;
    m_finished = false;
    if (m_components != components)
        m_components = components;
    m_secondTimer->stop();
    m_silenceTimer.stop();
    m_seconds = 0;
    if (components.isEmpty())
        return;
    Q_EMIT emitMsg(tr("Try to fix application with those components:"), MsgLine);
    for (const QString& component : components)
        Q_EMIT emitMsg("- " + component, MsgLine);
}

void ExeFileExecutor::applyFix() {
    if (m_isCancelled)
        return;
    if (m_secondTimer->isActive() || m_linksTimer.isActive() || m_awaited != Awaited::Nothing) {
        qInfo() << "no repair in the midst of a launch";
        return;
    }
    m_autoFix = true;
    if (!m_components.isEmpty() || !m_fonts.isEmpty()) {
        m_awaited = Awaited::Components;
        Q_EMIT Fixing();
        m_queue->install(m_bottlesName, m_components);
    } else if (isOtherRepair(m_diagnosis.action)) {
        applyOtherRepair(m_diagnosis.action);
    } else if (!isStagingKnown()) {
        m_queue->install(m_bottlesName, {});
    } else if (BottleRecord::runner(BottlesConfig::instance()->get(m_bottlesName)) ==
               WineNames::stagingRunner()) {
        fail(false, false);
    } else {
        switchRunner();
    }
}

void ExeFileExecutor::retryFix(const QStringList& components) {
    if (m_awaited != Awaited::Nothing || m_secondTimer->isActive())
        return;
    m_components = components;
    for (const QString& component : components)
        m_triedComponents.removeAll(component);
    applyFix();
}

/// What is neither a component nor the staging runner.
void ExeFileExecutor::applyOtherRepair(RepairAction action) {
    if (action == RepairAction::LaunchAgain) {
        launch();
        return;
    }
    const QString runner = m_runnersFor32Bit.forRepair();
    if (action == RepairAction::RenewBottle)
        m_step = new RenewBottleStep(m_bottlesName, this);
    else
        m_step = new Runner32Step(m_bottlesName, runner, m_runnersFor32Bit.isInstalled(runner), this);
    m_awaited = Awaited::Step;
    connect(m_step, &RepairStep::emitMsg, this, &ExeFileExecutor::emitMsg);
    connect(m_step, &RepairStep::blocked, this, &ExeFileExecutor::askForPrograms);
    connect(m_step, &RepairStep::done, this, &ExeFileExecutor::onStepDone);
    Q_EMIT Fixing();
    Q_EMIT emitStep(tr("Fixing"), MsgLine);
    m_step->start();
}

/// A step that came to nothing can be asked for again.
void ExeFileExecutor::onStepDone(const QString& error) {
    std::exchange(m_step, nullptr)->deleteLater();
    m_awaited = Awaited::Nothing;
    if (error.isEmpty()) {
        m_triedRepairs.append(m_diagnosis.action);
        launch();
        return;
    }
    Q_EMIT emitMsg(LaunchVerdict::nothingFixedMessage(hasTriedRepair()), MsgLine);
    m_diagnosis.reason = error;
    fail(true, false);
}

bool ExeFileExecutor::hasTriedRepair() const {
    return m_hasSwitchedRunner || !m_triedRepairs.isEmpty() || !m_triedComponents.isEmpty() ||
           !m_triedFonts.isEmpty();
}

/// First nothing is listened to any more, so that no answer can start the next step; then the service is
/// told.
void ExeFileExecutor::cancelRepair() {
    if (m_isCancelled)
        return;
    m_isCancelled = true;
    const Awaited last = std::exchange(m_awaited, Awaited::Nothing);
    // While the user is asked, the service has refused already: a cancel would end what others asked for.
    const Awaited awaited = m_isAsking ? Awaited::Nothing : last;
    m_queue->cancel();
    if (m_step)
        m_step->cancel();
    BottlesConfig* config = BottlesConfig::instance();
    config->disconnect(this);
    ComponentManager::instance()->disconnect(this);
    m_secondTimer->stop();
    m_silenceTimer.stop();
    m_linksTimer.stop();
    const auto onAnswer = [hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "Failed to cancel installing dependencies:" << answer.errorMessage;
    };
    if (awaited == Awaited::Runner)
        ComponentManager::instance()->cancelInstall(ComponentKind::runner(), m_runner);
    else if (awaited == Awaited::Components)
        config->cancelInstallingDependency(m_bottlesName, config, onAnswer);
    else if (awaited == Awaited::RunnerSwitch)
        config->cancelInstallingComponent(m_bottlesName, ComponentKind::runner(), WineNames::stagingRunner(),
                                          config, onAnswer);
}

void ExeFileExecutor::switchRunner() {
    m_awaited = Awaited::RunnerSwitch;
    Q_EMIT Fixing();
    Q_EMIT emitMsg(tr("App run failed, try to using lumora-wine-staging and relaunch"), MsgStatus);
    requestRunner();
    Q_EMIT emitStep(tr("Fixing"), MsgLine);
}

void ExeFileExecutor::requestRunner() {
    BottlesConfig* config = BottlesConfig::instance();
    config->disconnect(this);
    connect(config, &BottlesConfig::component_setup_done, this, &ExeFileExecutor::onRunnerSwitchDone);
    config->setRunner(m_bottlesName, WineNames::stagingRunner(), this, [this](const BusResult& answer) {
        if (answer.ok || answer.isBusy() || answer.timedOut || m_awaited != Awaited::RunnerSwitch)
            return;
        qWarning().noquote() << "cannot switch the runner of" << m_bottlesName << answer.errorMessage;
        giveUp();
    });
}

void ExeFileExecutor::askForPrograms(const QStringList& names) {
    m_isAsking = true;
    qInfo() << "programs run in" << m_bottlesName << names;
    Q_EMIT programsRunning(names);
}

void ExeFileExecutor::answerProgramsRunning(bool close) {
    if (!m_isAsking || m_isCancelled)
        return;
    m_isAsking = false;
    if (!close) {
        m_awaited = Awaited::Nothing;
        m_queue->cancel();
        if (m_step)
            std::exchange(m_step, nullptr)->deleteLater();
        BottlesConfig::instance()->disconnect(this);
        fail(true, m_verdict.isSuccessed);
        return;
    }
    BottleTasks::killWineServer(m_bottlesName, this, [this] {
        if (m_awaited == Awaited::Components)
            m_queue->retry();
        else if (m_awaited == Awaited::RunnerSwitch)
            requestRunner();
        else if (m_awaited == Awaited::Step)
            m_step->retry();
    });
}

void ExeFileExecutor::onRunnerSwitchDone(const QString& bottle_name, const QString& component_type,
                                         const QString& component_name, const QString& result) {
    if (m_isAsking || m_awaited != Awaited::RunnerSwitch || component_type != ComponentKind::runner() ||
        bottle_name != m_bottlesName || component_name != WineNames::stagingRunner())
        return;
    const QJsonObject object = QJsonDocument::fromJson(result.toUtf8()).object();
    const QStringList programs = object.value("busy").toVariant().toStringList();
    if (!programs.isEmpty()) {
        askForPrograms(programs);
        return;
    }
    BottlesConfig::instance()->disconnect(this);
    m_hasSwitchedRunner = true;
    if (!object.value("ok").toBool(true))
        Q_EMIT componentFailed(component_name, ServiceErrorText::of(object));
    qInfo() << "Relaunch program...";
    Q_EMIT emitMsg(tr("Switch runner success, relaunch program..."), MsgLine);
    launch();
}

void ExeFileExecutor::onComponentsRepareDone() {
    m_awaited = Awaited::Nothing;
    m_triedComponents += m_components;
    if (m_components.isEmpty() && m_fonts.isEmpty()) {
        giveUp();
        return;
    }
    if (!m_fonts.isEmpty()) {
        MissingFonts::fix(BottleRecord::path(BottlesConfig::instance()->get(m_bottlesName)), m_fonts);
        m_triedFonts += m_fonts;
    }
    launch();
}

void ExeFileExecutor::giveUp() {
    m_awaited = Awaited::Nothing;
    BottlesConfig::instance()->disconnect(this);
    m_finished = true;
    Q_EMIT emitMsg(LaunchVerdict::nothingFixedMessage(hasTriedRepair()), MsgLine);
    m_failure.triedComponents = m_triedComponents;
    m_failure.components.clear();
    m_failure.fonts.clear();
    m_failure.possible.clear();
    if (m_starts > 0)
        m_diagnosis = Diagnosis::of(m_failure);
    fail(false, false);
}

void ExeFileExecutor::onServiceLost() {
    if (m_awaited == Awaited::Runner) {
        onWineInstalled(0, ComponentKind::runner(), m_runner, "the bottle service has gone");
    } else if (m_awaited == Awaited::RunnerSwitch && !m_isAsking) {
        qWarning() << "the bottle service has gone while it switched the runner of" << m_bottlesName;
        giveUp();
    }
}
