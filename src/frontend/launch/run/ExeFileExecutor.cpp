#include "launch/run/ExeFileExecutor.h"

#include <QDebug>
#include <utility>

#include "backend/SessionBus.h"
#include "core/base/WineNames.h"
#include "launch/bottle/LaunchBottle.h"
#include "launch/records/ExecutorRecord.h"
#include "launch/run/BottlePreparation.h"
#include "launch/run/LaunchAnalysis.h"
#include "launch/run/LaunchRepair.h"
#include "launch/run/LinkCollector.h"
#include "launch/run/WatchedRun.h"

ExeFileExecutor::ExeFileExecutor(const QString& exePath, QObject* parent)
    : QObject(parent),
      m_file(new LaunchedFile(exePath, this)),
      m_bottle(new LaunchBottle(this)),
      m_preparation(new BottlePreparation(m_file, this)),
      m_links(new LinkCollector(m_bottle, this)),
      m_repair(new LaunchRepair(m_bottle, this)) {
    new ExecutorRecord(this);  // so that its table is there from the first launch on
    connectParts();
}

ExeFileExecutor::~ExeFileExecutor() {
    qDebug() << "ExeFileExecutor::~ExeFileExecutor()";
}

void ExeFileExecutor::connectParts() {
    connect(m_file, &LaunchedFile::iconReady, this, &ExeFileExecutor::iconReady);
    connect(m_preparation, &BottlePreparation::emitMsg, this, &ExeFileExecutor::emitMsg);
    connect(m_preparation, &BottlePreparation::done, this, &ExeFileExecutor::launch);
    connect(m_links, &LinkCollector::done, this, &ExeFileExecutor::onLinksCollected);
    connect(m_repair, &LaunchRepair::emitMsg, this, &ExeFileExecutor::emitMsg);
    connect(m_repair, &LaunchRepair::emitStep, this, &ExeFileExecutor::emitStep);
    connect(m_repair, &LaunchRepair::begun, this, &ExeFileExecutor::Fixing);
    connect(m_repair, &LaunchRepair::programsRunning, this, &ExeFileExecutor::programsRunning);
    connect(m_repair, &LaunchRepair::componentFailed, this, &ExeFileExecutor::componentFailed);
    connect(m_repair, &LaunchRepair::ended, this, &ExeFileExecutor::onRepairEnded);
}

void ExeFileExecutor::start() {
    if (!m_file->isReadable()) {
        qWarning().noquote() << m_file->path() + " is not readable, exit...";
        return;
    }
    Q_EMIT emitStep(tr("Initializing Envrironment"), MsgLine);
    if (!SessionBus::isConnected()) {
        fail(false, false);
        return;
    }
    m_appName = displayName();
    m_bottle->setName(bottlesName());
    m_state = State::Preparing;
    m_preparation->start();
}

void ExeFileExecutor::startIn(const QString& bottle) {
    m_appName = displayName();
    m_bottle->setName(bottle);
    launch();
}

void ExeFileExecutor::launchProgram(const QString& bottle, const QString& programUuid) {
    qInfo() << "Launch via desktop file...";
    Q_EMIT emitStep(tr("Launching"), MsgLine);
    Q_EMIT emitMsg(tr("Launching %1").arg(m_appName), MsgStatus);
    m_bottle->setName(bottle);
    m_programUuid = programUuid;
    launch();
}

void ExeFileExecutor::prepareFix(const QString& bottle, const QString& programUuid,
                                 const QStringList& components) {
    m_bottle->setName(bottle);
    m_programUuid = programUuid;
    m_repair->allowUnasked();
    m_repair->setMissing(components, {});
    if (components.isEmpty())
        return;
    Q_EMIT emitMsg(tr("Try to fix application with those components:"), MsgLine);
    for (const QString& component : components)
        Q_EMIT emitMsg("- " + component, MsgLine);
}

/// A bottle that is not ready is no reason to stop here: the launch fails by itself, for the given reason.
void ExeFileExecutor::launch(const QString& startError) {
    if (m_state == State::Cancelled)
        return;
    qInfo() << "Launch exe file...";
    Q_EMIT emitStep(tr("Launching"), MsgLine);
    Q_EMIT emitMsg(tr("Launching %1").arg(displayName()), MsgStatus);
    dropLastRun();
    m_state = State::Running;
    if (m_file->isStoredProgram() || m_file->is32BitOnly())
        m_repair->lookUpRunners();
    m_run = new WatchedRun({m_file, m_programUuid, displayName()}, m_bottle, startError, this);
    connect(m_run, &WatchedRun::emitMsg, this, &ExeFileExecutor::emitMsg);
    connect(m_run, &WatchedRun::windowPopuped, this, &ExeFileExecutor::windowPopuped);
    connect(m_run, &WatchedRun::lingers, this, &ExeFileExecutor::lingers);
    connect(m_run, &WatchedRun::mayHaveInstalled, m_links, &LinkCollector::collectInBackground);
    connect(m_run, &WatchedRun::ended, this, &ExeFileExecutor::onRunEnded);
    m_run->start();
}

/// Deletes later: a repair without consent starts the next run in a signal of the last one.
void ExeFileExecutor::dropLastRun() {
    if (m_run) {
        m_run->closeLauncher();
        m_run->disconnect(this);
        std::exchange(m_run, nullptr)->deleteLater();
    }
    dropAnalysis();
}

void ExeFileExecutor::dropAnalysis() {
    if (m_analysis) {
        m_analysis->disconnect(this);
        std::exchange(m_analysis, nullptr)->deleteLater();
    }
}

void ExeFileExecutor::onRunEnded(const RunEnd& end) {
    if (end.isStopped()) {
        m_state = State::Idle;
        Q_EMIT stopped();
        return;
    }
    m_state = State::Analysing;
    if (WineNames::isPublicBottle(m_bottle->name()))
        m_repair->allowUnasked();
    m_analysis =
        new LaunchAnalysis({m_bottle->name(), displayName(), m_firstRun != 0}, m_file, m_repair, end, this);
    connect(m_analysis, &LaunchAnalysis::emitMsg, this, &ExeFileExecutor::emitMsg);
    connect(m_analysis, &LaunchAnalysis::done, this, &ExeFileExecutor::onAnalysed);
    m_analysis->start();
}

/// The links come before the result or the offer, since what is told depends on whether there are any.
void ExeFileExecutor::onAnalysed(const LaunchVerdict& verdict) {
    m_repair->setMissing(m_analysis->components(), m_analysis->fonts());
    m_diagnosis = m_analysis->diagnosis();
    m_verdict = verdict;
    if (verdict.next == LaunchVerdict::Repair) {
        repair();
        return;
    }
    m_state = State::CollectingLinks;
    m_links->collect();
}

void ExeFileExecutor::onLinksCollected() {
    m_state = State::Idle;
    const LaunchVerdict verdict = m_verdict;  // who hears of it may start anew
    if (!verdict.message.isEmpty())
        Q_EMIT emitMsg(verdict.message, MsgLine);
    if (verdict.next == LaunchVerdict::Succeeded)
        Q_EMIT runSuccessed();
    else
        fail(verdict.canWeFix, verdict.isSuccessed);
}

void ExeFileExecutor::applyFix() {
    if (m_state == State::Idle)
        repair();
    else if (m_state != State::Cancelled)
        qInfo() << "no repair in the midst of a launch";
}

void ExeFileExecutor::retryFix(const QStringList& components) {
    if (m_state != State::Idle)
        return;
    m_repair->setRetried(components);
    repair();
}

void ExeFileExecutor::repair() {
    m_state = State::Repairing;
    m_repair->start(m_diagnosis.action);
}

void ExeFileExecutor::onRepairEnded(RepairEnd end, const QString& errorText) {
    m_state = State::Idle;
    switch (end) {
        case RepairEnd::Repaired:
            launch();
            break;
        case RepairEnd::NothingLeft:
            if (m_analysis)
                m_diagnosis = m_analysis->finalDiagnosis();
            fail(false, false);
            break;
        case RepairEnd::OnStaging:
            fail(false, false);
            break;
        case RepairEnd::Failed:
            m_diagnosis.reason = errorText;
            fail(true, false);
            break;
        case RepairEnd::Declined:
            fail(true, m_verdict.isSuccessed);
            break;
    }
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

void ExeFileExecutor::answerProgramsRunning(bool close) {
    m_repair->answerProgramsRunning(close);
}

void ExeFileExecutor::cancelRepair() {
    if (m_state == State::Cancelled)
        return;
    m_state = State::Cancelled;
    m_preparation->cancel();
    m_repair->cancel();
    m_links->cancel();
    if (m_run)
        m_run->abandon();
    dropAnalysis();
}

void ExeFileExecutor::closeLauncher() {
    if (m_run)
        m_run->closeLauncher();
}

QString ExeFileExecutor::bottlesName() {
    return m_bottle->name().isEmpty() ? m_preparation->bottle() : m_bottle->name();
}

QString ExeFileExecutor::displayName() {
    return m_appName.isEmpty() ? m_file->displayName() : m_appName;
}

bool ExeFileExecutor::hasAskedForBottle() const {
    return m_preparation->hasAskedForBottle();
}

int ExeFileExecutor::seconds() const {
    return m_run ? m_run->seconds() : 0;
}

bool ExeFileExecutor::hasComeUp() const {
    return m_analysis && m_analysis->hasComeUp();
}

const QStringList& ExeFileExecutor::components() const {
    return m_repair->components();
}

const QStringList& ExeFileExecutor::fonts() const {
    return m_repair->fonts();
}

const QStringList& ExeFileExecutor::triedComponents() const {
    return m_repair->tried().components;
}

void ExeFileExecutor::onWineInstalled(int success, const QString& componentType, const QString& componentName,
                                      const QString& errMsg) {
    m_preparation->onWineInstalled(success, componentType, componentName, errMsg);
}

void ExeFileExecutor::onWineDownload(const QString& componentType, const QString& componentName,
                                     uint received_size, uint total_size, const QString&) {
    m_preparation->onWineDownload(componentType, componentName, received_size, total_size);
}

void ExeFileExecutor::onComponentsRepareDone() {
    m_repair->onComponentsDone();
}

void ExeFileExecutor::onExeFinished(int exitCode) {
    if (m_run)
        m_run->finish(exitCode);
}

void ExeFileExecutor::onRunnerSwitchDone(const QString& bottle_name, const QString& component_type,
                                         const QString& component_name, const QString& result) {
    m_repair->onRunnerSwitchDone(bottle_name, component_type, component_name, result);
}
