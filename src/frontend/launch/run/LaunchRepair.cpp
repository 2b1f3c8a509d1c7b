#include "launch/run/LaunchRepair.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

#include "backend/BottleRecord.h"
#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/MissingFonts.h"
#include "backend/PendingWork.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/TemplateProgress.h"
#include "core/base/WineNames.h"
#include "launch/LaunchText.h"
#include "launch/bottle/LaunchBottle.h"
#include "launch/repair/DependencyInstallQueue.h"
#include "launch/repair/RenewBottleStep.h"
#include "launch/repair/Runner32Step.h"
#include "launch/run/BottleTasks.h"
#include "launch/run/LaunchVerdict.h"

LaunchRepair::LaunchRepair(LaunchBottle* bottle, QObject* parent)
    : QObject(parent), m_bottle(bottle), m_queue(new DependencyInstallQueue(this)) {
    connect(m_queue, &DependencyInstallQueue::emitMsg, this, &LaunchRepair::emitMsg);
    connect(m_queue, &DependencyInstallQueue::emitStep, this, &LaunchRepair::emitStep);
    connect(m_queue, &DependencyInstallQueue::failed, this,
            [this](const QString& component, const QString& reason) {
                m_tried.failedComponents += component;
                Q_EMIT componentFailed(component, reason);
            });
    connect(m_queue, &DependencyInstallQueue::blocked, this, &LaunchRepair::askForPrograms);
    connect(m_queue, &DependencyInstallQueue::done, this, &LaunchRepair::onComponentsDone);
    connect(BottlesConfig::instance(), &BottlesConfig::component_setup_done, this,
            &LaunchRepair::onRunnerSwitchDone);
    connect(new TemplateProgress(this), &TemplateProgress::preparing, this,
            [this](const QString& runner, int percent) {
                if (m_work == Work::RunnerSwitch && runner == WineNames::stagingRunner())
                    Q_EMIT emitMsg(LaunchText::environmentProgress(percent), MsgStatus);
            });
    whenServiceIsLost(this, [this] { onServiceLost(); });
}

void LaunchRepair::setMissing(const QStringList& components, const QStringList& fonts) {
    m_components = components;
    m_fonts = fonts;
}

void LaunchRepair::setRetried(const QStringList& components) {
    m_components = components;
    for (const QString& component : components)
        m_tried.components.removeAll(component);
    m_tried.failedComponents.clear();
}

void LaunchRepair::lookUpRunners() {
    ComponentManager::instance()->whenKnown(this, [] {});
    BottleRepair::instance()->runnersFor32Bit(
        this, [this](const BusResult& answer) { m_runnersFor32Bit = RunnerChoice::of(answer.object()); });
}

QStringList LaunchRepair::untriedComponents() const {
    QStringList untried = m_components;
    for (const QString& component : m_tried.components)
        untried.removeAll(component);
    return untried;
}

bool LaunchRepair::isStagingKnown() {
    return ComponentManager::instance()->knownRunners().contains(WineNames::stagingRunner());
}

void LaunchRepair::start(RepairAction action) {
    m_mayRunUnasked = true;
    if (!m_components.isEmpty() || !m_fonts.isEmpty())
        installMissing();
    else if (action == RepairAction::LaunchAgain)
        end(RepairEnd::Repaired);
    else if (isOtherRepair(action))
        startStep(action);
    else if (!isStagingKnown())
        giveUp();
    else
        checkRunner();
}

void LaunchRepair::installMissing() {
    m_work = Work::Components;
    Q_EMIT begun();
    m_queue->install(m_bottle->name(), m_components);
}

void LaunchRepair::onComponentsDone() {
    if (m_work != Work::Components)
        return;
    m_tried.components += m_components;
    if (m_fonts.isEmpty()) {
        endInstallation();
        return;
    }
    m_work = Work::Fonts;
    m_bottle->withRecord(this, [this](const QJsonObject& record) {
        if (m_work != Work::Fonts)
            return;
        MissingFonts::fix(BottleRecord::path(record), m_fonts);
        m_tried.fonts += m_fonts;
        endInstallation();
    });
}

void LaunchRepair::endInstallation() {
    if (!m_components.isEmpty())
        m_bottle->setChanged();
    end(RepairEnd::Repaired);
}

void LaunchRepair::startStep(RepairAction action) {
    const QString runner = runnerFor32Bit();
    if (action == RepairAction::RenewBottle)
        m_step = new RenewBottleStep(m_bottle->name(), this);
    else
        m_step = new Runner32Step(m_bottle->name(), runner, m_runnersFor32Bit.isInstalled(runner), this);
    m_work = Work::Step;
    connect(m_step, &RepairStep::emitMsg, this, &LaunchRepair::emitMsg);
    connect(m_step, &RepairStep::blocked, this, &LaunchRepair::askForPrograms);
    connect(m_step, &RepairStep::done, this,
            [this, action](const QString& error) { onStepDone(action, error); });
    Q_EMIT begun();
    Q_EMIT emitStep(LaunchText::tr("Fixing"), MsgLine);
    m_step->start();
}

void LaunchRepair::onStepDone(RepairAction action, const QString& error) {
    std::exchange(m_step, nullptr)->deleteLater();
    if (error.isEmpty()) {
        m_tried.actions.append(action);
        if (action == RepairAction::InstallWow64Runner)
            m_bottle->setChanged();
        end(RepairEnd::Repaired);
        return;
    }
    Q_EMIT emitMsg(LaunchVerdict::nothingFixedMessage(m_tried.any()), MsgLine);
    end(RepairEnd::Failed, error);
}

void LaunchRepair::checkRunner() {
    m_work = Work::RunnerCheck;
    m_bottle->withRecord(this, [this](const QJsonObject& record) {
        if (m_work != Work::RunnerCheck)
            return;
        if (BottleRecord::runner(record) == WineNames::stagingRunner())
            end(RepairEnd::OnStaging);
        else
            switchRunner();
    });
}

void LaunchRepair::switchRunner() {
    m_work = Work::RunnerSwitch;
    Q_EMIT begun();
    Q_EMIT emitMsg(LaunchText::tr("App run failed, try to using lumora-wine-staging and relaunch"),
                   MsgStatus);
    requestRunner();
    Q_EMIT emitStep(LaunchText::tr("Fixing"), MsgLine);
}

void LaunchRepair::requestRunner() {
    BottlesConfig::instance()->setRunner(
        m_bottle->name(), WineNames::stagingRunner(), this, [this](const BusResult& answer) {
            if (answer.ok || answer.isBusy() || answer.timedOut || m_work != Work::RunnerSwitch)
                return;
            qWarning().noquote() << "cannot switch the runner of" << m_bottle->name() << answer.errorMessage;
            giveUp();
        });
}

void LaunchRepair::onRunnerSwitchDone(const QString& bottle, const QString& kind, const QString& name,
                                      const QString& result) {
    if (m_isAsking || m_work != Work::RunnerSwitch || kind != ComponentKind::runner() ||
        bottle != m_bottle->name() || name != WineNames::stagingRunner())
        return;
    const QJsonObject object = QJsonDocument::fromJson(result.toUtf8()).object();
    const QStringList programs = object.value("busy").toVariant().toStringList();
    if (!programs.isEmpty()) {
        askForPrograms(programs);
        return;
    }
    m_tried.actions.append(RepairAction::SwitchToStaging);
    m_bottle->setChanged();
    if (!object.value("ok").toBool(true))
        Q_EMIT componentFailed(name, ServiceErrorText::of(object));
    qInfo() << "Relaunch program...";
    Q_EMIT emitMsg(LaunchText::tr("Switch runner success, relaunch program..."), MsgLine);
    end(RepairEnd::Repaired);
}

void LaunchRepair::onServiceLost() {
    if (m_work != Work::RunnerSwitch || m_isAsking)
        return;
    qWarning() << "the bottle service has gone while it switched the runner of" << m_bottle->name();
    giveUp();
}

void LaunchRepair::askForPrograms(const QStringList& names) {
    m_isAsking = true;
    qInfo() << "programs run in" << m_bottle->name() << names;
    Q_EMIT programsRunning(names);
}

void LaunchRepair::answerProgramsRunning(bool close) {
    if (!m_isAsking)
        return;
    m_isAsking = false;
    if (close) {
        BottleTasks::killWineServer(m_bottle->name(), this, [this] { resume(); });
        return;
    }
    m_queue->cancel();
    if (m_step)
        std::exchange(m_step, nullptr)->deleteLater();
    end(RepairEnd::Declined);
}

void LaunchRepair::resume() {
    if (m_work == Work::Components)
        m_queue->retry();
    else if (m_work == Work::RunnerSwitch)
        requestRunner();
    else if (m_work == Work::Step)
        m_step->retry();
}

/// First nothing is listened to any more, so that no answer can start the next step; then the service is
/// told.
void LaunchRepair::cancel() {
    const Work last = std::exchange(m_work, Work::None);
    // While the user is asked, the service has refused already: a cancel would end what others asked for.
    const Work underWay = std::exchange(m_isAsking, false) ? Work::None : last;
    const QString component = m_queue->current();
    m_queue->cancel();
    if (m_step)
        m_step->cancel();
    BottlesConfig* config = BottlesConfig::instance();
    const auto onAnswer = [hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "Failed to cancel installing dependencies:" << answer.errorMessage;
    };
    // By its name: it may wait behind what somebody else has asked for.
    if (underWay == Work::Components)
        BottleRepair::instance()->cancelDependency(m_bottle->name(), component, onAnswer);
    else if (underWay == Work::RunnerSwitch)
        config->cancelInstallingComponent(m_bottle->name(), ComponentKind::runner(),
                                          WineNames::stagingRunner(), config, onAnswer);
}

void LaunchRepair::giveUp() {
    Q_EMIT emitMsg(LaunchVerdict::nothingFixedMessage(m_tried.any()), MsgLine);
    end(RepairEnd::NothingLeft);
}

void LaunchRepair::end(RepairEnd result, const QString& errorText) {
    m_work = Work::None;
    Q_EMIT ended(result, errorText);
}
