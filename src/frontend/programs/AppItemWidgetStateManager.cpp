#include "programs/AppItemWidgetStateManager.h"

#include <QDebug>
#include <QFile>
#include <QTimer>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ServiceThreads.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/FailedStarts.h"
#include "launch/repair/StartCheck.h"
#include "launch/script/LauncherExit.h"
#include "launch/script/WineLauncher.h"
#include "programs/AppItemWidget.h"
#include "programs/ProgramRuns.h"

namespace {
constexpr int ExitGraceMs = 1000;
}

AppItemWidgetStateManager::AppItemWidgetStateManager() {
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::program_exited, this, &AppItemWidgetStateManager::onProgramExited);
    connect(service, &BottlesConfig::program_deleted, this, &AppItemWidgetStateManager::onProgramUuidDeleted);
    connect(service, &BottlesConfig::bottles_deleted, this, [this](const QString& bottle) {
        for (const ProgramRef& ref : m_launches.keys()) {
            if (ref.bottle == bottle)
                onProgramUuidDeleted(bottle, ref.uuid);
        }
        FailedStarts::instance()->clearBottle(bottle);
    });
    connect(AppBootingStateManager::instance(), &AppBootingStateManager::launchResult, this,
            &AppItemWidgetStateManager::onLaunchResult);
    connect(ProgramRuns::instance(), &ProgramRuns::changed, this, &AppItemWidgetStateManager::tell);
    connect(FailedStarts::instance(), &FailedStarts::changed, this,
            [this](const QString& bottle, const QString& uuid) {
                tell({bottle, uuid}, isRunning(ProgramRef{bottle, uuid}));
            });
}

bool AppItemWidgetStateManager::isRunning(const ProgramRef& ref) {
    return ProgramRuns::instance()->isRunning(ref);
}

bool AppItemWidgetStateManager::isRunning(const QString& uuid) {
    return ProgramRuns::instance()->isRunning(uuid);
}

void AppItemWidgetStateManager::startSetup(const QString& appId) {
    m_setups.insert(appId);
    if (!m_setupHold)
        m_setupHold = PendingWork::instance()->hold();
    Q_EMIT signalAppSetuping(appId);
}

void AppItemWidgetStateManager::onSetupingYmlDone(const QString& appInfoId, const QString& yamlFile,
                                                  bool needRemove) {
    if (!m_setups.contains(appInfoId))
        return;
    qInfo().noquote().nospace() << "appInfoId [" << appInfoId << "] Setup done, check the widgets state...";
    Q_EMIT setupDone(appInfoId);
    if (needRemove)
        QFile::remove(yamlFile);
    m_setups.remove(appInfoId);
    if (m_setups.isEmpty())
        m_setupHold.reset();
}

void AppItemWidgetStateManager::watchItem(const QString& uuid, AppItemWidget* item) {
    qInfo() << "watching installed local app [ " << uuid << " ] -> " << item;
    m_items.insert(uuid, item);
    connect(item, &QObject::destroyed, this, [this, uuid] {
        for (auto it = m_items.find(uuid); it != m_items.end() && it.key() == uuid;)
            it = it->isNull() ? m_items.erase(it) : std::next(it);
    });
}

void AppItemWidgetStateManager::watchCard(const QString& uuid, const QModelIndex& card) {
    qInfo() << "watching installed store app [ " << uuid << " ] -> " << card;
    if (!m_cards.contains(uuid, card))
        m_cards.insert(uuid, card);
}

void AppItemWidgetStateManager::onProgramUuidDeleted(const QString& bottlesName, const QString& programUuid) {
    const ProgramRef ref{bottlesName, programUuid};
    endTiming(ref, false);
    forget(ref);
    FailedStarts::instance()->clear(bottlesName, programUuid);
    m_cards.remove(programUuid);
}

void AppItemWidgetStateManager::start(const Program& program, bool inTerminal) {
    const ProgramRef ref = program.ref;
    if (isRunning(ref))
        return;
    qInfo() << "start program" << ref.uuid << "of" << ref.bottle << (inTerminal ? "in a terminal" : "");
    auto* launcher = new WineLauncher(this);
    const QString name = program.name;
    m_launches.insert(ref, {launcher, PendingWork::instance()->hold()});
    connect(launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, launcher, ref, name] {
                onLauncherEnded(launcher, ref, LauncherExit::errorText(launcher->report(), name));
            });
    connect(launcher, &QProcess::errorOccurred, this, [this, launcher, ref](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onLauncherEnded(launcher, ref,
                            tr("The launch script cannot be run. Please install Cellarix again."));
    });
    ProgramRuns::instance()->setStarting(ref, true);
    launcher->setCli(inTerminal);
    // The window goes on while the service thinks.
    BottlesConfig::instance()->watchBottle(
        ref.bottle, launcher, [this, launcher, ref, name](const BusResult& bottle) {
            const auto launch = m_launches.find(ref);
            if (launch == m_launches.end() || launch->launcher != launcher)
                return;
            const PendingWork::Hold hold = std::move(launch->waiting);
            if (BottleRecord::path(bottle.object()).isEmpty()) {
                qWarning().noquote() << "no record of bottle" << ref.bottle << bottle.errorMessage;
                onLauncherEnded(launcher, ref,
                                tr("%1 could not be started: its container cannot be found.").arg(name));
                return;
            }
            launcher->setBottle(ref.bottle, bottle.object());
            launcher->launchProgram(ref.uuid);
            if (!m_launches.contains(ref))
                return;
            m_timedBottles.insert(ref.uuid, ref.bottle);
            AppBootingStateManager::instance()->startRecording(ref.bottle, ref.uuid);
        });
}

void AppItemWidgetStateManager::stop(const ProgramRef& ref) {
    qInfo() << "stop program" << ref.uuid << "of" << ref.bottle;
    const auto launch = m_launches.find(ref);
    if (launch != m_launches.end() && launch->waiting) {
        forget(ref);
        return;
    }
    endTiming(ref, false);
    if (launch != m_launches.end())
        launch->isStopped = true;
    BottleUtils::killProgram(ref.bottle, ref.uuid);
}

void AppItemWidgetStateManager::onLauncherEnded(WineLauncher* launcher, const ProgramRef& ref,
                                                const QString& sentence) {
    launcher->deleteLater();
    if (!sentence.isEmpty())
        qWarning().noquote() << sentence;
    // Nobody waits for one that has been given up.
    const auto launch = m_launches.constFind(ref);
    if (launch == m_launches.constEnd() || launch->launcher != launcher)
        return;
    if (sentence.isEmpty()) {
        checkEnd(ref);
        return;
    }
    const bool isStopped = launch->isStopped;
    endTiming(ref, true);
    forget(ref);
    if (isStopped)
        return;
    if (launcher->exitCode() != LauncherExit::Busy)  // which is nothing to repair
        FailedStarts::instance()->mark(ref.bottle, ref.uuid, {sentence, {}});
    Q_EMIT failed(ref.uuid, sentence);
}

void AppItemWidgetStateManager::onProgramExited(const QString& uuid) {
    qInfo().noquote() << "program exited: " << uuid;
    for (const ProgramRef& ref : m_launches.keys()) {
        const Launch& launch = m_launches[ref];
        if (ref.uuid != uuid || launch.waiting)  // it is the one before that has ended
            continue;
        if (!launch.launcher || launch.launcher->state() == QProcess::NotRunning) {
            checkEnd(ref);
            continue;
        }
        // Its own end, which knows the exit code, comes at the same time.
        QTimer::singleShot(ExitGraceMs, launch.launcher, [this, ref, launcher = launch.launcher] {
            if (m_launches.contains(ref) && m_launches[ref].launcher == launcher)
                checkEnd(ref);
        });
    }
}

void AppItemWidgetStateManager::onLaunchResult(const QString& uuid, bool successed) {
    const ProgramRef ref{m_timedBottles.take(uuid), uuid};
    const auto launch = m_launches.find(ref);
    if (launch != m_launches.end()) {
        launch->isTimed = false;
        launch->isUp = true;
    }
    if (successed)
        FailedStarts::instance()->clear(ref.bottle, uuid);
}

void AppItemWidgetStateManager::endTiming(const ProgramRef& ref, bool report) {
    const auto launch = m_launches.find(ref);
    if (launch == m_launches.end() || !launch->isTimed)
        return;
    launch->isTimed = false;
    if (AppBootingStateManager::instance()->isRecording(ref.uuid))
        AppBootingStateManager::instance()->finishRecording(ref.uuid, report);
}

void AppItemWidgetStateManager::forget(const ProgramRef& ref) {
    const auto launch = m_launches.constFind(ref);
    if (launch == m_launches.constEnd())
        return;
    if (launch->waiting)
        launch->launcher->deleteLater();
    m_launches.erase(launch);
    ProgramRuns::instance()->setStarting(ref, false);
}

/// The check waits for the service and reads a log.
void AppItemWidgetStateManager::checkEnd(const ProgramRef& ref) {
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

void AppItemWidgetStateManager::tell(const ProgramRef& ref, bool running) {
    Q_EMIT runningChanged(ref.uuid, running);
    const auto items = m_items.values(ref.uuid);
    for (const QPointer<AppItemWidget>& item : items) {
        if (item && item->ref() == ref)
            item->refreshRunState();
    }
    const auto cards = m_cards.values(ref.uuid);
    for (const QPersistentModelIndex& card : cards) {
        if (card.isValid())
            Q_EMIT cardChanged(card);
    }
}
