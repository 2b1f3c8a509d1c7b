#include "launch/run/BottlePreparation.h"

#include <QDebug>
#include <QJsonObject>
#include <QtConcurrentRun>
#include <utility>

#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/InBackground.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceThreads.h"
#include "backend/TemplateProgress.h"
#include "core/base/WineNames.h"
#include "launch/LaunchText.h"
#include "launch/bottle/BottleChoice.h"
#include "launch/repair/RunnerChoice.h"
#include "launch/run/LaunchedFile.h"

namespace {

constexpr int CreationAttempts = 2;  // a service that died over the first one is started anew

}  // namespace

BottlePreparation::BottlePreparation(LaunchedFile* file, QObject* parent) : QObject(parent), m_file(file) {
    // Constructed here, since it lives in the thread of its first use.
    connect(BottlesConfig::instance(), &BottlesConfig::bottlesCreated, this,
            &BottlePreparation::onBottlesCreated);
    m_choice = QtConcurrent::run(ServiceThreads::pool(), chooseBottle, file->path(), file->peInfoSoFar(),
                                 file->md5());
    connect(new TemplateProgress(this), &TemplateProgress::preparing, this,
            &BottlePreparation::onTemplateProgress);
    whenServiceIsLost(this, [this] {
        onWineInstalled(0, ComponentKind::runner(), m_runner, "the bottle service has gone");
    });
}

QString BottlePreparation::bottle() {
    if (m_bottle.isEmpty())
        m_bottle = m_choice.result();
    if (m_bottle.isEmpty())
        m_bottle = chooseBottle(m_file->path(), m_file->peInfo(), m_file->md5());
    return m_bottle;
}

void BottlePreparation::start() {
    qInfo().noquote() << "bottles name: " << bottle();
    m_state = State::LookingForBottle;
    inBackground(
        this, [] { return BottlesConfig::instance()->list(); },
        [this](const QStringList& bottles) {
            if (m_state == State::LookingForBottle)
                onBottlesListed(bottles);
        },
        ServiceThreads::pool());
}

void BottlePreparation::onBottlesListed(const QStringList& bottles) {
    if (bottles.contains(m_bottle)) {
        end({});
        return;
    }
    if (!m_file->is32BitOnly()) {
        prepare(WineNames::defaultRunner());
        return;
    }
    m_state = State::ChoosingRunner;
    BottleRepair::instance()->runnersFor32Bit(this, [this](const BusResult& answer) {
        if (m_state == State::ChoosingRunner)
            prepare(RunnerChoice::of(answer.object()).forNewBottle());
    });
}

void BottlePreparation::cancel() {
    if (std::exchange(m_state, State::Cancelled) == State::FetchingRunner)
        ComponentManager::instance()->cancelInstall(ComponentKind::runner(), m_runner);
}

void BottlePreparation::prepare(const QString& runner) {
    m_runner = runner;
    m_state = State::ChoosingRunner;
    Q_EMIT emitMsg(LaunchText::tr("Choose wine version: %1").arg(m_runner), MsgLine);
    ComponentManager::instance()->whenKnown(this, [this] {
        if (m_state != State::ChoosingRunner)
            return;
        // Another than the default is chosen only from what is installed.
        if (m_runner != WineNames::defaultRunner() ||
            ComponentManager::instance()->runnerInstalled.contains(m_runner))
            createBottle();
        else
            fetchRunner();
    });
}

void BottlePreparation::fetchRunner() {
    Q_EMIT emitMsg(LaunchText::tr("%1 is not installing, try to download now").arg(m_runner), MsgLine);
    m_state = State::FetchingRunner;
    ComponentManager* manager = ComponentManager::instance();
    connect(manager, &ComponentManager::installed, this, &BottlePreparation::onWineInstalled);
    connect(manager, &ComponentManager::updateProgress, this, &BottlePreparation::onWineDownload);
    manager->install(ComponentKind::runner(), m_runner, this, [this](const BusResult& answer) {
        if (answer.timedOut)
            return;  // a large download and a slow line; the signal, or the service's end, tells
        // The answer comes when all is done. The signal was there before, or never comes.
        const QString error = answer.ok ? answer.object().value("error").toString() : answer.errorMessage;
        const bool success = answer.object().value("ok").toBool();
        onWineInstalled(int(success), ComponentKind::runner(), m_runner, error);
        // The signal has no more than the service's English.
        const QString reason =
            success || m_state == State::Cancelled ? QString() : ServiceErrorText::of(answer.object());
        if (!reason.isEmpty())
            Q_EMIT emitMsg(reason, MsgError);
    });
}

void BottlePreparation::onWineDownload(const QString& kind, const QString& name, uint received, uint total) {
    if (m_state != State::FetchingRunner || kind != ComponentKind::runner() || name != m_runner)
        return;
    const int percent = total == 0 ? 0 : qRound(qMin(1.0, double(received) / total) * 100);
    Q_EMIT emitMsg(LaunchText::tr("Downloading %1: %2%").arg(name, QString::number(percent)), MsgStatus);
}

void BottlePreparation::onWineInstalled(int success, const QString& kind, const QString& name,
                                        const QString& error) {
    if (m_state != State::FetchingRunner || kind != ComponentKind::runner() || name != m_runner)
        return;
    if (success) {
        Q_EMIT emitMsg(LaunchText::tr("%1 has downloaded").arg(name), MsgLine);
        qInfo().noquote() << name << "install success";
    } else {
        qWarning().noquote() << name << "install failed. using " << WineNames::defaultRunner() << error;
        Q_EMIT emitMsg(LaunchText::tr("Download failed, fallback to %1").arg(WineNames::defaultRunner()),
                       MsgError);
        m_runner = WineNames::defaultRunner();
    }
    createBottle();
}

void BottlePreparation::createBottle() {
    Q_EMIT emitMsg(LaunchText::tr("Start initializing envrionment, please wait..."), MsgStatus);
    m_state = State::CreatingBottle;
    m_hasAskedForBottle = true;
    m_creationAttempts = 0;
    requestBottle();
}

void BottlePreparation::requestBottle() {
    ++m_creationAttempts;
    BottlesConfig::instance()->createBottles(m_bottle, m_runner);
}

/// A service that says nothing has died or could not be reached.
void BottlePreparation::onBottlesCreated(const QString& bottle, const QJsonObject& result) {
    if (m_state != State::CreatingBottle || bottle != m_bottle)
        return;
    const QString error = ServiceErrorText::of(result);
    const bool isCreated = result.value("ok").toBool();
    if (!isCreated && error.isEmpty() && m_creationAttempts < CreationAttempts) {
        qWarning().noquote() << "the creation of" << m_bottle << "was interrupted; trying again";
        requestBottle();
    } else if (!isCreated && error.isEmpty()) {
        end(LaunchText::tr("The background service that makes containers does not answer."));
    } else {
        end(isCreated ? QString() : error);
    }
}

void BottlePreparation::onTemplateProgress(const QString& runner, int percent) {
    if (m_state == State::CreatingBottle && runner == m_runner)
        Q_EMIT emitMsg(LaunchText::environmentProgress(percent), MsgStatus);
}

void BottlePreparation::end(const QString& errorText) {
    m_state = State::Idle;
    Q_EMIT done(errorText);
}
