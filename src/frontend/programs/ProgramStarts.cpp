#include "programs/ProgramStarts.h"

#include <QDebug>
#include <QTimer>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/FailedStarts.h"
#include "launch/repair/StartCheck.h"
#include "launch/script/LauncherExit.h"
#include "launch/script/WineLauncher.h"
#include "programs/OrphanedBottles.h"
#include "programs/ProgramRuns.h"

namespace {
constexpr int ExitGraceMs = 1000;
}

ProgramStarts::ProgramStarts() {
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::program_exited, this, &ProgramStarts::onProgramExited);
    connect(service, &BottlesConfig::program_deleted, this, &ProgramStarts::onProgramDeleted);
    connect(service, &BottlesConfig::bottles_deleted, this, &ProgramStarts::onBottleDeleted);
    connect(AppBootingStateManager::instance(), &AppBootingStateManager::launchResult, this,
            &ProgramStarts::onLaunchResult);
}

void ProgramStarts::start(const Program& program, bool inTerminal) {
    const ProgramRef ref = program.ref;
    if (ProgramRuns::instance()->isRunning(ref))
        return;
    qInfo() << "start program" << ref.uuid << "of" << ref.bottle << (inTerminal ? "in a terminal" : "");
    auto* launcher = new WineLauncher(this);
    m_launches.insert(ref, {launcher, PendingWork::instance()->hold()});
    connect(launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, launcher, ref, name = program.name] {
                onLauncherEnded(launcher, ref, LauncherExit::errorText(launcher->report(), name));
            });
    connect(launcher, &QProcess::errorOccurred, this, [this, launcher, ref](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onLauncherEnded(launcher, ref,
                            tr("The launch script cannot be run. Please install Cellarix again."));
    });
    ProgramRuns::instance()->setStarting(ref, true);
    launcher->setCli(inTerminal);
    BottlesConfig::instance()->watchBottle(ref.bottle, launcher,
                                           [this, launcher, program](const BusResult& bottle) {
                                               if (isCurrent(program.ref, launcher))
                                                   startScript(launcher, program, bottle);
                                           });
}

void ProgramStarts::startScript(WineLauncher* launcher, const Program& program, const BusResult& bottle) {
    const ProgramRef ref = program.ref;
    const PendingWork::Hold hold = std::move(m_launches[ref].recordHold);
    if (BottleRecord::path(bottle.object()).isEmpty()) {
        qWarning().noquote() << "no record of bottle" << ref.bottle << bottle.errorMessage;
        onLauncherEnded(launcher, ref,
                        tr("%1 could not be started: its container cannot be found.").arg(program.name));
        return;
    }
    launcher->setBottle(ref.bottle, bottle.object());
    launcher->launchProgram(ref.uuid);
    if (!m_launches.contains(ref))
        return;
    m_timedBottles.insert(ref.uuid, ref.bottle);
    AppBootingStateManager::instance()->startRecording(ref.bottle, ref.uuid);
}

void ProgramStarts::stop(const ProgramRef& ref) {
    qInfo() << "stop program" << ref.uuid << "of" << ref.bottle;
    const auto launch = m_launches.find(ref);
    if (launch != m_launches.end() && launch->recordHold) {
        forget(ref);
        return;
    }
    endTiming(ref, false);
    if (launch != m_launches.end())
        launch->isStopped = true;
    BottleUtils::killProgram(ref.bottle, ref.uuid);
}

/// False for a launcher whose start was forgotten meanwhile.
bool ProgramStarts::isCurrent(const ProgramRef& ref, const WineLauncher* launcher) const {
    const auto launch = m_launches.constFind(ref);
    return launch != m_launches.constEnd() && launch->launcher == launcher;
}

void ProgramStarts::onLauncherEnded(WineLauncher* launcher, const ProgramRef& ref, const QString& errorText) {
    launcher->deleteLater();
    if (!errorText.isEmpty())
        qWarning().noquote() << errorText;
    if (!isCurrent(ref, launcher))
        return;
    if (errorText.isEmpty()) {
        checkEnd(ref);
        return;
    }
    const bool isStopped = m_launches[ref].isStopped;
    endTiming(ref, true);
    forget(ref);
    if (isStopped)
        return;
    // A bottle that is being changed, or whose package is gone, needs no repair.
    if (launcher->report().cause == LauncherExit::PackageRemoved)
        OrphanedBottles::instance()->load();
    else if (launcher->exitCode() != LauncherExit::Busy)
        FailedStarts::instance()->mark(ref.bottle, ref.uuid, {errorText, {}});
    Q_EMIT failed(ref.uuid, errorText);
}

void ProgramStarts::onProgramExited(const QString& uuid) {
    qInfo().noquote() << "program exited: " << uuid;
    for (const ProgramRef& ref : m_launches.keys()) {
        const Launch& launch = m_launches[ref];
        if (ref.uuid != uuid || launch.recordHold)  // then an earlier run has ended
            continue;
        if (!launch.launcher || launch.launcher->state() == QProcess::NotRunning) {
            checkEnd(ref);
            continue;
        }
        // The launch script ends at the same time, and its exit code tells more.
        QTimer::singleShot(ExitGraceMs, launch.launcher, [this, ref, launcher = launch.launcher] {
            if (isCurrent(ref, launcher))
                checkEnd(ref);
        });
    }
}

void ProgramStarts::onProgramDeleted(const QString& bottle, const QString& uuid) {
    endTiming({bottle, uuid}, false);
    forget({bottle, uuid});
    FailedStarts::instance()->clear(bottle, uuid);
}

void ProgramStarts::onBottleDeleted(const QString& bottle) {
    for (const ProgramRef& ref : m_launches.keys()) {
        if (ref.bottle == bottle)
            onProgramDeleted(bottle, ref.uuid);
    }
    FailedStarts::instance()->clearBottle(bottle);
}

void ProgramStarts::onLaunchResult(const QString& uuid, bool succeeded) {
    const ProgramRef ref{m_timedBottles.take(uuid), uuid};
    const auto launch = m_launches.find(ref);
    if (launch != m_launches.end()) {
        launch->isTimed = false;
        launch->isUp = true;
    }
    if (succeeded)
        FailedStarts::instance()->clear(ref.bottle, uuid);
}

/// Ends the measurement of the time to the first window.
void ProgramStarts::endTiming(const ProgramRef& ref, bool report) {
    const auto launch = m_launches.find(ref);
    if (launch == m_launches.end() || !launch->isTimed)
        return;
    launch->isTimed = false;
    if (AppBootingStateManager::instance()->isRecording(ref.uuid))
        AppBootingStateManager::instance()->finishRecording(ref.uuid, report);
}

void ProgramStarts::forget(const ProgramRef& ref) {
    const auto launch = m_launches.constFind(ref);
    if (launch == m_launches.constEnd())
        return;
    if (launch->recordHold)
        launch->launcher->deleteLater();
    m_launches.erase(launch);
    ProgramRuns::instance()->setStarting(ref, false);
}

/// Finds out in the background, where the service is asked and a log is read, whether the start has failed.
void ProgramStarts::checkEnd(const ProgramRef& ref) {
    const Launch& launch = m_launches[ref];
    StartEnd end{ref.bottle, ref.uuid, {}, launch.isUp, launch.isStopped};
    if (launch.launcher && launch.launcher->state() == QProcess::NotRunning)
        end.exitCode = LauncherExit::codeOf(*launch.launcher);
    const bool isGood = !end.isStopped && end.exitCode == 0;
    forget(ref);
    changeServiceAsync(
        this, [end] { return StartCheck::check(end); },
        [ref, isGood](const FailedStart& failure) {
            if (!failure.reason.isEmpty())
                FailedStarts::instance()->mark(ref.bottle, ref.uuid, failure);
            else if (isGood)
                FailedStarts::instance()->clear(ref.bottle, ref.uuid);
        });
}
