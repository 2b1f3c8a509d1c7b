#include "launch/repair/DependencyInstallQueue.h"

#include <QDebug>
#include <QJsonObject>

#include "backend/BottlesConfig.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "launch/repair/DependencySetupProgressEmitter.h"

DependencyInstallQueue::DependencyInstallQueue(QObject* parent) : QObject(parent) {
    whenServiceIsLost(this, [this] {
        BusResult gone;
        gone.serviceGone = true;
        failCurrent("the bottle service has gone", {{"error", gone.errorText()}});
    });
}

void DependencyInstallQueue::failCurrent(const QString& why, const QJsonObject& result) {
    if (m_currentDependency.isEmpty())
        return;
    qWarning().noquote() << "cannot install" << m_currentDependency << "into" << m_bottleName << why;
    QJsonObject failure = result;
    failure.insert("ok", false);
    slotsDependsInstalled(m_bottleName, m_currentDependency, failure);
}

void DependencyInstallQueue::cancel() {
    BottlesConfig::instance()->disconnect(this);
    dropEmitter();
    m_bottleName.clear();
    m_pending.clear();
    m_currentDependency.clear();
    m_isBlocked = false;
}

void DependencyInstallQueue::retry() {
    if (std::exchange(m_isBlocked, false))
        request();
}

void DependencyInstallQueue::install(const QString& bottleName, const QStringList& dependencies) {
    auto* service = BottlesConfig::instance();
    cancel();
    if (dependencies.isEmpty()) {
        Q_EMIT done();
        return;
    }
    m_bottleName = bottleName;
    m_pending = dependencies;
    connect(service, &BottlesConfig::dependecyInstalled, this,
            &DependencyInstallQueue::slotsDependsInstalled);
    connect(service, &BottlesConfig::dependencyDownloadProgress, this,
            &DependencyInstallQueue::slotsDependsSetupProgress);
    installNext();
}

void DependencyInstallQueue::installNext() {
    dropEmitter();
    if (m_pending.isEmpty()) {
        BottlesConfig::instance()->disconnect(this);
        m_currentDependency.clear();
        Q_EMIT done();
        return;
    }
    m_currentDependency = m_pending.takeFirst();
    request();
    Q_EMIT emitMsg(tr("Fix: install components %1").arg(m_currentDependency), MsgStatus);
    Q_EMIT emitStep(tr("Fixing"), MsgLine);
    showPercent(0);
    qInfo() << "fix:: install" << m_currentDependency;
    m_progressEmitter = new DependencySetupProgressEmitter(m_bottleName, m_currentDependency, this);
    connect(m_progressEmitter, &DependencySetupProgressEmitter::valueChanged, this,
            &DependencyInstallQueue::showPercent);
}

void DependencyInstallQueue::request() {
    const int attempt = ++m_attempt;
    BottlesConfig::instance()->installDependency(
        m_bottleName, m_currentDependency, this, [this, attempt](const BusResult& answer) {
            if (attempt != m_attempt || m_isBlocked || answer.isBusy() || answer.timedOut)
                return;
            if (!answer.ok || !answer.object().value("ok").toBool(true))
                failCurrent(answer.ok ? answer.text : answer.errorMessage,
                            answer.ok ? answer.object() : QJsonObject{{"error", answer.errorText()}});
        });
}

void DependencyInstallQueue::dropEmitter() {
    if (!m_progressEmitter)
        return;
    m_progressEmitter->disconnect(this);
    BottlesConfig::instance()->disconnect(m_progressEmitter);
    m_progressEmitter->deleteLater();
    m_progressEmitter = nullptr;
}

void DependencyInstallQueue::showPercent(int percent) {
    Q_EMIT emitStep(tr("Fixing") + QString(" ... %1%").arg(percent), MsgStatus);
}

bool DependencyInstallQueue::isCurrent(const QString& bottle, const QString& dependency) const {
    return !m_currentDependency.isEmpty() && !m_isBlocked && bottle == m_bottleName &&
           dependency == m_currentDependency;
}

void DependencyInstallQueue::slotsDependsInstalled(const QString& bottles_name,
                                                   const QString& dependency_name,
                                                   const QJsonObject& result) {
    if (!isCurrent(bottles_name, dependency_name))
        return;
    qInfo() << dependency_name << "installed? " << result;
    const QStringList programs = result.value("busy").toVariant().toStringList();
    if (!programs.isEmpty()) {
        m_isBlocked = true;
        Q_EMIT blocked(programs);
        return;
    }
    const bool ok = result.value("ok").toBool();
    // The next status replaces this one; the reason stays visible as an error line.
    const QString reason = ServiceErrorText::of(result);
    if (!ok && !reason.isEmpty())
        Q_EMIT emitMsg(reason, MsgError);
    if (!ok)
        Q_EMIT failed(dependency_name, reason);
    Q_EMIT emitMsg(tr("Setup %1").arg(ok ? tr("Success") : tr("Failed")), MsgStatus);
    installNext();
}

void DependencyInstallQueue::slotsDependsSetupProgress(const QString& bottles_name,
                                                       const QString& dependency_name, uint received_size,
                                                       uint total_size, const QString&) {
    if (!isCurrent(bottles_name, dependency_name))
        return;
    // 0 % if the size is unknown; never above 100 %, even if the server sends more than it announced.
    const int percent = total_size == 0 ? 0 : int(qMin(1.0, double(received_size) / total_size) * 100);
    Q_EMIT emitMsg(tr("Downloading %1: %2%").arg(dependency_name, QString::number(percent)), MsgStatus);
    if (percent > 99)
        Q_EMIT emitMsg(tr("Setup %1, please waiting...").arg(dependency_name), MsgStatus);
}
