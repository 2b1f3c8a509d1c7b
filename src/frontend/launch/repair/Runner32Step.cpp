#include "launch/repair/Runner32Step.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>

#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/PendingWork.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/TemplateProgress.h"

namespace {

/// The launch uses the same texts for the default runner.
QString launchText(const char* text) {
    return QCoreApplication::translate("ExeFileExecutor", text);
}

QString errorOf(const BusResult& answer) {
    return answer.ok ? ServiceErrorText::of(answer.object()) : answer.errorText();
}

}  // namespace

Runner32Step::Runner32Step(const QString& bottle, const QString& runner, bool isInstalled, QObject* parent)
    : RepairStep(parent), m_bottle(bottle), m_runner(runner), m_isInstalled(isInstalled) {
    connect(BottlesConfig::instance(), &BottlesConfig::component_setup_done, this, &Runner32Step::onSwitched);
    connect(new TemplateProgress(this), &TemplateProgress::preparing, this,
            [this](const QString& name, int percent) {
                if (m_state == State::Switching && name == m_runner)
                    Q_EMIT emitMsg(launchText("The first run needs an environment, which takes about half a "
                                              "minute: %1%")
                                       .arg(percent),
                                   MsgStatus);
            });
    whenServiceIsLost(this, [this] { onServiceLost(); });
}

void Runner32Step::start() {
    if (m_isInstalled)
        requestSwitch();
    else
        fetch();
}

void Runner32Step::fetch() {
    m_state = State::Fetching;
    m_callTimedOut = false;
    Q_EMIT emitMsg(launchText("%1 is not installing, try to download now").arg(m_runner), MsgLine);
    ComponentManager* manager = ComponentManager::instance();
    connect(manager, &ComponentManager::updateProgress, this, &Runner32Step::onProgress);
    connect(manager, &ComponentManager::installed, this,
            [this](int success, const QString& kind, const QString& name, const QString& error) {
                if (kind == ComponentKind::runner() && name == m_runner && (success || m_callTimedOut))
                    onFetched(success, error);
            });
    manager->install(ComponentKind::runner(), m_runner, this, [this](const BusResult& answer) {
        m_callTimedOut = answer.timedOut;  // a long download; the signal reports its result
        if (!answer.timedOut)
            onFetched(answer.object().value("ok").toBool(), errorOf(answer));
    });
}

void Runner32Step::onProgress(const QString& kind, const QString& name, uint received, uint total) {
    if (m_state != State::Fetching || kind != ComponentKind::runner() || name != m_runner)
        return;
    const int percent = total == 0 ? 0 : qRound(qMin(1.0, double(received) / total) * 100);
    Q_EMIT emitMsg(launchText("Downloading %1: %2%").arg(name, QString::number(percent)), MsgStatus);
}

void Runner32Step::onFetched(bool success, const QString& error) {
    if (m_state != State::Fetching)
        return;
    if (!success) {
        end(tr("%1 could not be downloaded: %2").arg(m_runner, error));
        return;
    }
    Q_EMIT emitMsg(launchText("%1 has downloaded").arg(m_runner), MsgLine);
    requestSwitch();
}

void Runner32Step::requestSwitch() {
    m_state = State::Switching;
    Q_EMIT emitMsg(tr("Switching the container to %1").arg(m_runner), MsgStatus);
    BottlesConfig::instance()->setRunner(m_bottle, m_runner, this, [this](const BusResult& answer) {
        if (!answer.ok && !answer.isBusy() && !answer.timedOut && m_state == State::Switching)
            end(tr("The container could not be switched to %1: %2").arg(m_runner, answer.errorText()));
    });
}

void Runner32Step::onSwitched(const QString& bottle, const QString& kind, const QString& name,
                              const QString& result) {
    if (m_state != State::Switching || bottle != m_bottle || kind != ComponentKind::runner() ||
        name != m_runner)
        return;
    const QJsonObject object = QJsonDocument::fromJson(result.toUtf8()).object();
    const QStringList programs = object.value("busy").toVariant().toStringList();
    if (!programs.isEmpty()) {
        m_state = State::Asking;
        Q_EMIT blocked(programs);
    } else if (object.value("ok").toBool()) {
        Q_EMIT emitMsg(launchText("Switch runner success, relaunch program..."), MsgLine);
        end({});
    } else {
        end(tr("The container could not be switched to %1: %2").arg(m_runner, ServiceErrorText::of(object)));
    }
}

void Runner32Step::retry() {
    if (m_state == State::Asking)
        requestSwitch();
}

void Runner32Step::cancel() {
    const State last = std::exchange(m_state, State::Idle);
    BottlesConfig* config = BottlesConfig::instance();
    const auto onAnswer = [hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "cannot cancel the switch of a runner:" << answer.errorMessage;
    };
    if (last == State::Fetching)
        ComponentManager::instance()->cancelInstall(ComponentKind::runner(), m_runner);
    else if (last == State::Switching)
        config->cancelInstallingComponent(m_bottle, ComponentKind::runner(), m_runner, config, onAnswer);
}

void Runner32Step::onServiceLost() {
    if (m_state == State::Fetching || m_state == State::Switching)
        end(tr("The background service has ended meanwhile. Try again."));
}

void Runner32Step::end(const QString& error) {
    m_state = State::Idle;
    if (!error.isEmpty())
        qWarning().noquote() << "bottle" << m_bottle << "does not run on" << m_runner << "yet:" << error;
    Q_EMIT done(error);
}
