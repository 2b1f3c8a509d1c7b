// The second third of ExeFileExecutor: from the end of the program to the result.
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/SessionBus.h"
#include "core/base/WineNames.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/monitor/WineExeProcessMonitor.h"
#include "launch/repair/BottleDamage.h"
#include "launch/repair/RepairOffer.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/script/LauncherExit.h"
#include "launch/script/WineLauncher.h"
#include "launch/winelog/LogFindings.h"
#include "launch/winelog/WineLogParser.h"

namespace {

constexpr int LinksMs = 10000;
constexpr int ExitGraceMs = 500;
constexpr int SecondLookMs = 1000;
constexpr int MaximumLooks = 6;  // of five cycles each

}  // namespace

void ExeFileExecutor::onAppStart() {
    qInfo() << "============ app start ============";
    Q_EMIT windowPopuped();
}

void ExeFileExecutor::onAppQuit() {
    qInfo() << "============ app exit ============";
    qInfo().noquote() << "isCrashed? " << (m_monitor->crashed ? "true" : "false");
    const int start = m_starts;
    if (m_monitor->windowSeen || m_launcher->state() == QProcess::NotRunning || m_looks >= MaximumLooks) {
        onExeFinished(m_hasHandedOver ? m_exitCode : 0);
        return;
    }
    if (m_hasBeenSeen) {
        // The launch script, which knows the exit code, ends at the same time.
        QTimer::singleShot(ExitGraceMs, this, [this, start] {
            if (start == m_starts)
                onExeFinished(0);
        });
        return;
    }
    // The monitor gave up before there was anything to see, and the program has not ended: the machine is
    // slow. A bottle that is being ended takes the script along within that second.
    QTimer::singleShot(SecondLookMs, this, [this, start] {
        if (start != m_starts || !m_secondTimer->isActive() || m_launcher->state() == QProcess::NotRunning)
            return;
        qInfo() << "no process yet; looking again";
        ++m_looks;
        m_monitor->start(m_bottlesName);
    });
}

/// The library knows a file's program by an id that this launch has not heard of.
void ExeFileExecutor::onEndRequested(const QString& bottle, const QString& programId) {
    const bool isOurs = programId.isEmpty() || programId == m_programUuid ||
                        (m_programUuid.isEmpty() && !WineNames::isPublicBottle(bottle));
    if (bottle == m_bottlesName && isOurs && m_secondTimer->isActive())
        m_isEndedFromOutside = true;
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
    // A script that was killed has not told what became of the program, which is a failure.
    m_isEndedFromOutside = m_isEndedFromOutside || (isExit && LauncherExit::isEndedFromOutside(exitCode));
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
    if (m_isEndedFromOutside && !m_monitor->windowSeen) {
        qInfo() << "ended from outside";
        m_finished = true;
        Q_EMIT stopped();
        return;
    }
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
    m_hasComeUp = !found.isFailed();
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
    m_failure.failedComponents = m_failedComponents;
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
    askForSize();
    if (!m_components.isEmpty() || !asked.isFirstRun || !facts(m_exitCode).neverCameUp())
        return;
    m_components = m_failure.missingComponents();
    if (!m_components.isEmpty()) {
        Q_EMIT emitMsg(tr("Try to install components:"), MsgLine);
        Q_EMIT emitMsg(m_components.join('\n'), MsgLine);
    }
}

/// Nobody waits for the answer, which the service has at hand: it comes before that about the damage.
void ExeFileExecutor::askForSize() {
    if (m_components != QStringList("mono9"))
        return;
    const int start = m_starts;
    BottleRepair::instance()->describeDependencies(
        m_bottlesName, m_components, this, [this, start](const BusResult& answer) {
            if (start == m_starts)
                m_failure.downloadBytes = OfferedComponent::bytes(OfferedComponent::read(answer.array()));
        });
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
