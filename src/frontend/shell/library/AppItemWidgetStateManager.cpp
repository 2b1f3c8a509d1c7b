#include "shell/library/AppItemWidgetStateManager.h"

#include <QDebug>
#include <QFile>
#include <QtConcurrent>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/ServiceThreads.h"
#include "launch/LauncherExit.h"
#include "launch/ProgramAppFixer.h"
#include "launch/WineLauncher.h"
#include "launch/records/AppBootingStateManager.h"
#include "shell/library/AppItemWidget.h"

AppItemWidgetStateManager::AppItemWidgetStateManager() {
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::program_exited, this, &AppItemWidgetStateManager::onProgramExited);
    connect(service, &BottlesConfig::program_deleted, this, &AppItemWidgetStateManager::onProgramUuidDeleted);
    connect(service, &BottlesConfig::bottles_deleted, this, [this](const QString& bottle) {
        for (const QString& uuid : m_running.keys()) {
            if (m_running.value(uuid).bottle == bottle)
                onProgramUuidDeleted(bottle, uuid);
        }
    });
    connect(AppBootingStateManager::instance(), &AppBootingStateManager::launchResult, this,
            [this](const QString& uuid) {
                const auto run = m_running.find(uuid);
                if (run != m_running.end())
                    run->isTimed = false;
            });
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
    const auto run = m_running.constFind(programUuid);
    if (run != m_running.constEnd() && run->bottle == bottlesName) {
        endTiming(programUuid, false);
        setIdle(programUuid, false);
    }
    m_cards.remove(programUuid);
}

void AppItemWidgetStateManager::start(const Program& program, bool inTerminal) {
    const ProgramRef ref = program.ref;
    if (isRunning(ref.uuid))
        return;
    qInfo() << "start program" << ref.uuid << "of" << ref.bottle << (inTerminal ? "in a terminal" : "");
    auto* launcher = new WineLauncher(this);
    m_running.insert(ref.uuid, {ref.bottle, launcher, PendingWork::instance()->hold()});
    const QString name = program.name;
    connect(launcher, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this, launcher, ref, name] {
                onLauncherEnded(launcher, ref, LauncherExit::errorText(launcher->report(), name));
            });
    connect(launcher, &QProcess::errorOccurred, this,
            [this, launcher, ref, name](QProcess::ProcessError error) {
                if (error == QProcess::FailedToStart)
                    onLauncherEnded(launcher, ref,
                                    tr("The launch script cannot be run. Please install Cellarix again."));
            });
    tell(ref.uuid, true);
    launcher->setCli(inTerminal);
    // The window goes on while the service thinks.
    BottlesConfig::instance()->watchBottle(
        ref.bottle, launcher, [this, launcher, ref, name](const BusResult& bottle) {
            const auto run = m_running.find(ref.uuid);
            if (run == m_running.end() || run->launcher != launcher)
                return;
            const PendingWork::Hold hold = std::move(run->waiting);
            if (BottleRecord::path(bottle.object()).isEmpty()) {
                qWarning().noquote() << "no record of bottle" << ref.bottle << bottle.errorMessage;
                onLauncherEnded(launcher, ref,
                                tr("%1 could not be started: its container cannot be found.").arg(name));
                return;
            }
            launcher->setBottle(ref.bottle, bottle.object());
            launcher->launchProgram(ref.uuid);
            if (isRunning(ref.uuid))
                AppBootingStateManager::instance()->startRecording(ref.bottle, ref.uuid);
        });
}

void AppItemWidgetStateManager::stop(const ProgramRef& ref) {
    qInfo() << "stop program" << ref.uuid << "of" << ref.bottle;
    const auto run = m_running.constFind(ref.uuid);
    if (run != m_running.constEnd() && run->waiting) {
        setIdle(ref.uuid, false);
        return;
    }
    endTiming(ref.uuid, false);
    // A copied bottle has programs with the same ids.
    BottleUtils::killProgram(run == m_running.constEnd() ? ref.bottle : run->bottle, ref.uuid);
}

void AppItemWidgetStateManager::onLauncherEnded(WineLauncher* launcher, const ProgramRef& ref,
                                                const QString& sentence) {
    launcher->deleteLater();
    if (!sentence.isEmpty())
        qWarning().noquote() << sentence;
    // Nobody waits for one that has been given up.
    if (m_running.value(ref.uuid).launcher != launcher)
        return;
    if (!sentence.isEmpty())
        endTiming(ref.uuid, true);
    setIdle(ref.uuid, sentence.isEmpty());
    if (!sentence.isEmpty())
        Q_EMIT failed(ref.uuid, sentence);
}

void AppItemWidgetStateManager::onProgramExited(const QString& uuid) {
    qInfo().noquote() << "program exited: " << uuid;
    const auto run = m_running.constFind(uuid);
    if (run == m_running.constEnd() || !run->waiting)  // else it is the one before that has ended
        setIdle(uuid, true);
}

void AppItemWidgetStateManager::endTiming(const QString& uuid, bool report) {
    const auto run = m_running.find(uuid);
    if (run == m_running.end() || !run->isTimed)
        return;
    run->isTimed = false;
    if (AppBootingStateManager::instance()->isRecording(uuid))
        AppBootingStateManager::instance()->finishRecording(uuid, report);
}

void AppItemWidgetStateManager::setIdle(const QString& uuid, bool lookForRepair) {
    const auto run = m_running.constFind(uuid);
    if (run == m_running.constEnd())
        return;
    const QString bottle = run->bottle;
    if (run->waiting)
        run->launcher->deleteLater();
    m_running.erase(run);
    tell(uuid, false);
    // The check waits for the service and reads a log, and nobody waits for it.
    if (lookForRepair)
        QtConcurrent::run(ServiceThreads::pool(),
                          [bottle, uuid] { ProgramAppFixer(bottle, uuid, true).checkProgram(); });
}

void AppItemWidgetStateManager::tell(const QString& uuid, bool running) {
    Q_EMIT runningChanged(uuid, running);
    const auto items = m_items.values(uuid);
    for (const QPointer<AppItemWidget>& item : items) {
        if (item)
            item->refreshRunState();
    }
    const auto cards = m_cards.values(uuid);
    for (const QPersistentModelIndex& card : cards) {
        if (card.isValid())
            Q_EMIT cardChanged(card);
    }
}
