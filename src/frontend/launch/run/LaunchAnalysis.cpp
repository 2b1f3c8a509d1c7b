#include "launch/run/LaunchAnalysis.h"

#include <QDebug>
#include <QJsonObject>
#include <algorithm>

#include "backend/BottleRepair.h"
#include "core/base/WineNames.h"
#include "launch/LaunchText.h"
#include "launch/repair/BottleDamage.h"
#include "launch/repair/RepairOffer.h"
#include "launch/run/LaunchRepair.h"
#include "launch/run/LaunchedFile.h"
#include "launch/winelog/LogFindings.h"
#include "launch/winelog/WineLogParser.h"

namespace {

bool contains(const QVector<FailureSign>& signs, Failure failure) {
    return std::any_of(signs.cbegin(), signs.cend(),
                       [failure](const FailureSign& sign) { return sign.failure == failure; });
}

}  // namespace

LaunchAnalysis::LaunchAnalysis(const Launch& launch, LaunchedFile* file, const LaunchRepair* repair,
                               const RunEnd& end, QObject* parent)
    : QObject(parent), m_launch(launch), m_file(file), m_repair(repair), m_end(end) {
    m_failure.exitCode = end.exitCode;
    m_failure.isExitCodeKnown = end.isExitCodeKnown;
    m_failure.isPackage = file->isPackage();
    m_failure.seconds = end.seconds;
    m_failure.isSilent = end.isSilent;
    m_failure.windowSeen = end.windowSeen;
    m_failure.crashed = end.crashed;
    m_failure.launcherReason = end.script.hasLog || end.startError.isEmpty()
                                   ? LauncherExit::errorText(end.script, launch.name)
                                   : end.startError;
    m_failure.triedComponents = repair->tried().components;
    m_failure.triedFonts = repair->tried().fonts;
    m_failure.failedComponents = repair->tried().failedComponents;
}

bool LaunchAnalysis::isPublic() const {
    return WineNames::isPublicBottle(m_launch.bottle);
}

void LaunchAnalysis::start() {
    const LaunchFacts found = facts();
    if (found.isFailed())
        qInfo() << "Launch failed";
    if (isPublic()) {
        m_failure.components = m_repair->untriedComponents();
        m_failure.fonts = m_repair->fonts();
    } else {
        readLog();
    }
    Q_EMIT emitMsg(LaunchVerdict::endMessage(m_end.exitCode, found), MsgLine);
    if (found.neverCameUp() && m_failure.launcherReason.isEmpty() && !isPublic())
        lookForDamage();
    else
        decide();
}

LaunchFacts LaunchAnalysis::facts() const {
    LaunchFacts facts;
    facts.isConsole = m_file->isConsole();
    facts.isNotStarted = m_end.exitCode == LauncherExit::NotStarted;
    facts.windowSeen = m_end.windowSeen;
    facts.crashed = m_end.crashed;
    facts.installFailed = m_installFailed;
    facts.autoFix = m_repair->mayRunUnasked();
    facts.isFirstRun = m_launch.isFirstRun;
    facts.hasComponents = !m_failure.components.isEmpty();
    facts.hasFonts = !m_failure.fonts.isEmpty();
    facts.hasTriedRepair = m_repair->tried().any();
    return facts;
}

/// Without a log of this start nothing is found: what lies there is an older one's.
void LaunchAnalysis::readLog() {
    Q_EMIT emitMsg(LaunchText::tr("Parsing wine logs and fix application"), MsgLine);
    WineLogParser parser;
    const int mask = m_end.script.hasLog ? parser.parseFile(m_end.logPath) : 0;
    LogFindings::Asked asked;
    asked.isFirstRun = m_launch.isFirstRun;
    asked.autoFix = m_repair->mayRunUnasked();
    asked.dotnetVersion = m_file->dotnetVersion();
    asked.requiredComponent = m_file->requiredComponent();
    asked.triedComponents = m_failure.triedComponents;
    asked.triedFonts = m_failure.triedFonts;
    const LogFindings found = LogFindings::of(parser, mask, asked);
    m_failure.addLog(parser, mask);
    if (found.crashed)
        qInfo().noquote() << "Seems app crashed! " << m_file->path();
    if (found.installFailed)
        qInfo().noquote() << "Seems app install failed! " << m_file->path();
    for (const LaunchMessage& message : found.messages)
        Q_EMIT emitMsg(message.text, message.type);
    m_installFailed = found.installFailed;
    m_failure.components = found.components;
    m_failure.fonts = found.fonts;
    askForSize();
    addMissingComponents();
}

/// What the parser does not ask for is offered only where nothing else explains the failure.
void LaunchAnalysis::addMissingComponents() {
    if (!m_failure.components.isEmpty() || !m_launch.isFirstRun || !facts().neverCameUp())
        return;
    m_failure.components = m_failure.missingComponents();
    if (!m_failure.components.isEmpty()) {
        Q_EMIT emitMsg(LaunchText::tr("Try to install components:"), MsgLine);
        Q_EMIT emitMsg(m_failure.components.join('\n'), MsgLine);
    }
}

/// Nobody waits for the answer, which the service has at hand: it comes before that about the damage.
void LaunchAnalysis::askForSize() {
    if (m_failure.components != QStringList("mono9"))
        return;
    BottleRepair::instance()->describeDependencies(
        m_launch.bottle, m_failure.components, this, [this](const BusResult& answer) {
            m_failure.downloadBytes = OfferedComponent::bytes(OfferedComponent::read(answer.array()));
        });
}

/// A damaged bottle lets any program fail in whatever way.
void LaunchAnalysis::lookForDamage() {
    BottleRepair::instance()->damage(m_launch.bottle, this, [this](const BusResult& answer) {
        const BottleDamage damage{answer.object().value("count").toInt(),
                                  answer.object().value("files").toVariant().toStringList()};
        if (damage.isCause(contains(m_failure.signs, Failure::DamagedBottle))) {
            qWarning().noquote() << damage.count << "files of Windows are damaged in" << m_launch.bottle
                                 << damage.files.mid(0, 5).join(' ');
            m_failure.signs.prepend({Failure::DamagedBottle, damage.worst(), {}});
            m_failure.possible.append(RepairAction::RenewBottle);
            m_failure.components.clear();  // what such a bottle lacks is not known before it is whole
            m_failure.fonts.clear();
        }
        decide();
    });
}

/// What Repair would do is told along with the reason, so that both are decided here.
void LaunchAnalysis::decide() {
    LaunchFacts found = facts();
    found.stagingKnown =
        found.isFailed() && m_failure.launcherReason.isEmpty() && LaunchRepair::isStagingKnown();
    m_hasComeUp = !found.isFailed();
    addPossibleRepairs();
    if (found.stagingKnown && found.isFirstRun && !found.autoFix)
        m_failure.possible.append(RepairAction::SwitchToStaging);
    m_diagnosis = Diagnosis::of(m_failure);
    found.hasOtherRepair = isOtherRepair(m_diagnosis.action);
    Q_EMIT done(LaunchVerdict::of(found));
}

void LaunchAnalysis::addPossibleRepairs() {
    const QString runner = m_repair->runnerFor32Bit();
    const bool needsWine32 = m_end.script.exitCode == LauncherExit::NeedsWine32;
    if ((needsWine32 || contains(m_failure.signs, Failure::Needs32Bit)) && !runner.isEmpty() && !isPublic() &&
        !m_repair->tried().actions.contains(RepairAction::InstallWow64Runner))
        m_failure.possible.append(RepairAction::InstallWow64Runner);
    if (!needsWine32 || m_failure.possible.isEmpty())
        return;
    // The other way stays in the logs, to be copied from there.
    Q_EMIT emitMsg(m_failure.launcherReason, MsgError);
    m_failure.launcherReason = LauncherExit::needs32BitText(m_launch.name, runner);
}

Diagnosis LaunchAnalysis::finalDiagnosis() const {
    FailureFacts failure = m_failure;
    failure.triedComponents = m_repair->tried().components;
    failure.failedComponents = m_repair->tried().failedComponents;
    failure.components.clear();
    failure.fonts.clear();
    failure.possible.clear();
    return Diagnosis::of(failure);
}
