#include "launch/records/AppBootingStateManager.h"

#include <QCoreApplication>
#include <QDebug>
#include <QTimer>

#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"
#include "launch/records/EventWriter.h"
#include "launch/records/RunEvent.h"
#include "launch/watch/X11WaitWineProgramThread.h"
#include "probes/HardwareInfo.h"

namespace {

constexpr int LimitMs = 30000;
constexpr float NotRecorded = -1.0F;

void warnNotRecorded(const QString& programId) {
    qWarning().noquote().nospace() << "program " << programId << " not in recording list";
}

}  // namespace

AppBootingStateManager::AppBootingStateManager() : m_waitThread(new X11WaitWineProgramThread(this)) {
    connect(m_waitThread, &X11WaitWineProgramThread::winpopuped, this,
            [this](const QString& uuid) { slotsUploadEventLog(uuid, true); });
    connect(m_waitThread, &QThread::finished, this, &AppBootingStateManager::onThreadFinished);
    connect(BottlesConfig::instance(), &BottlesConfig::bottles_deleted, this,
            &AppBootingStateManager::cancelBottle);
    // A post routine, since a start that fails never reaches the end of the event loop.
    qAddPostRoutine([] { instance()->shutDown(); });
}

void AppBootingStateManager::shutDown() {
    for (const QString& programId : m_recordingList.keys())
        finishRecording(programId, false);
    m_waitThread->stop();
    m_waitThread->wait();
    ServiceThreads::waitForDone();
}

void AppBootingStateManager::startRecording(const QString& bottleName, const QString& programId) {
    if (m_recordingList.contains(programId))
        return;
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);  // coarse timers may be late by seconds, and this time is recorded
    timer->setInterval(LimitMs);
    timer->start();
    if (m_recordingList.isEmpty() && !m_waitThread->isRunning())
        startThread();
    connect(timer, &QTimer::timeout, this, [this, programId] { slotsUploadEventLog(programId, false); });
    m_recordingList.insert(programId, {bottleName, timer});
}

void AppBootingStateManager::startThread() {
    qDebug() << "start bg wait thread";
    m_isStopping = false;
    m_waitThread->start();
}

/// A program may have been started between the request to stop the thread and its end.
void AppBootingStateManager::onThreadFinished() {
    if (m_isStopping && !m_recordingList.isEmpty() && !m_waitThread->isRunning())
        startThread();
}

float AppBootingStateManager::finishRecording(const QString& programId, bool report) {
    const auto found = m_recordingList.constFind(programId);
    if (found == m_recordingList.cend()) {
        warnNotRecorded(programId);
        return NotRecorded;
    }
    const BootRecord record = *found;
    // An expired timer returns -1.
    const float waited = float((LimitMs - qMax(record.timer->remainingTime(), 0)) / 1000.0);
    record.timer->disconnect(this);
    record.timer->deleteLater();
    m_recordingList.remove(programId);
    if (m_recordingList.isEmpty() && m_waitThread->isRunning()) {
        qDebug() << "stop bg wait thread";
        m_isStopping = true;
        m_waitThread->stop();
    }
    if (report) {
        Q_EMIT launchResult(programId, false, waited);
        writeRunEvent(record.bottleName, programId, false, waited);
    }
    return waited;
}

void AppBootingStateManager::slotsUploadEventLog(const QString& programUuid, bool successed) {
    const auto found = m_recordingList.constFind(programUuid);
    if (found == m_recordingList.cend()) {
        warnNotRecorded(programUuid);
        return;
    }
    const QString bottleName = found->bottleName;
    const float waited = finishRecording(programUuid, false);
    if (waited < 0)
        return;
    Q_EMIT launchResult(programUuid, successed, waited);
    qInfo().noquote().nospace() << "program " << programUuid << " popuped window";
    writeRunEvent(bottleName, programUuid, successed, waited);
}

void AppBootingStateManager::cancelBottle(const QString& bottleName) {
    QStringList programs;
    for (auto record = m_recordingList.cbegin(); record != m_recordingList.cend(); ++record) {
        if (record->bottleName == bottleName)
            programs.append(record.key());
    }
    for (const QString& programId : programs)
        finishRecording(programId, false);
}

QJsonObject AppBootingStateManager::buildRunEvent(const QString& bottleName, const QString& programId,
                                                  bool successed, float bootTime) const {
    return RunEvent::build(bottleName, programId, successed, bootTime, QDateTime::currentDateTime(),
                           machineInfo());
}

void AppBootingStateManager::writeRunEvent(const QString& bottleName, const QString& programId,
                                           bool successed, float bootTime, const QJsonObject& more) {
    const QDateTime now = QDateTime::currentDateTime();
    // In order, since each record depends on the one before.
    PendingWork::instance()->run(ServiceThreads::inOrder(), [=] {
        QJsonObject record = RunEvent::build(bottleName, programId, successed, bootTime, now, machineInfo());
        for (auto key = more.begin(); key != more.end(); ++key)
            record.insert(key.key(), key.value());
        EventWriter::instance().writeEvent(record);
    });
}
