// The last third of ExeFileExecutor: the repairs, each of which ends in another start or in a failure.
#include <QJsonDocument>
#include <utility>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/MissingFonts.h"
#include "backend/PendingWork.h"
#include "backend/ServiceErrorText.h"
#include "core/base/WineNames.h"
#include "launch/repair/DependencyInstallQueue.h"
#include "launch/repair/RenewBottleStep.h"
#include "launch/repair/Runner32Step.h"
#include "launch/run/BottleTasks.h"
#include "launch/run/ExeFileExecutor.h"

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

bool ExeFileExecutor::isStagingKnown() {
    return ComponentManager::instance()->knownRunners().contains(WineNames::stagingRunner());
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
    m_failedComponents.clear();
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
    m_failure.failedComponents = m_failedComponents;
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
