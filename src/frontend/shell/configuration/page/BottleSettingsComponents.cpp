// The components of the bottle: what the service is asked to set up, and what it tells of that.
#include <QDBusServiceWatcher>
#include <QDebug>
#include <QJsonDocument>
#include <QPointer>

#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/PendingWork.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceNames.h"
#include "launch/run/BottleTasks.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/rules/SettingTable.h"

void BottleSettings::followService() {
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::component_waiting_downloaded, this,
            [this](const QString& bottle, const QString& kind, const QString& name) {
                if (bottle == m_bottle)
                    tell(kind, [name](ComponentSetup* setup) { return setup->waiting(name); });
            });
    connect(service, &BottlesConfig::component_setup_start, this,
            [this](const QString& bottle, const QString& kind, const QString& name) {
                if (bottle == m_bottle)
                    tell(kind, [name](ComponentSetup* setup) { return setup->started(name); });
            });
    connect(service, &BottlesConfig::component_setup_done, this,
            [this](const QString& bottle, const QString& kind, const QString& name, const QString& result) {
                if (bottle == m_bottle)
                    onSetupDone(kind, name, result);
            });
    const ComponentManager* manager = ComponentManager::instance();
    connect(manager, &ComponentManager::refresh, this, &BottleSettings::announce);
    connect(manager, &ComponentManager::updateProgress, this,
            [this](const QString& kind, const QString& name, uint received, uint total) {
                tell(kind, [=](ComponentSetup* setup) { return setup->progress(name, received, total); });
            });
    whenServiceIsLost(this, [this] { onServiceLost(); });
    auto* arrival = new QDBusServiceWatcher(ServiceNames::Service, QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForRegistration, this);
    connect(arrival, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (m_state == State::Failed)
            load();
    });
}

void BottleSettings::readInstalling() {
    const auto adopt = [this](const BusResult& result) {
        if (!result.ok)
            qWarning("Failed to fetch bottles config.");
        const QJsonObject installing = result.object();
        qInfo() << "bottles is installing " << installing;
        if (setup(Setting::Runner).isUnderWay() || !setupOf(Setting::Runner).adopt(installing))
            return;
        m_values.set(Setting::Runner, ComponentSetup::valueOf(setup(Setting::Runner).name()));
        announce();
    };
    // Not from another thread: the signal of the end could overtake this answer.
    BottlesConfig::instance()->watchInstallingComponents(m_bottle, ComponentKind::runner(), this, adopt);
}

ComponentOffer BottleSettings::offer(Setting component) const {
    const ComponentManager* manager = ComponentManager::instance();
    const bool isRunner = component == Setting::Runner, isDxvk = component == Setting::Dxvk;
    return ComponentOffer::of(component,
                              isRunner ? manager->runnerInstalled
                              : isDxvk ? manager->dxvkInstalled
                                       : manager->vkd3dInstalled,
                              isRunner ? manager->runnerSupported
                              : isDxvk ? manager->dxvkSupported
                                       : manager->vkd3dSupported,
                              m_values.text(component), m_graphics);
}

void BottleSettings::chooseAfter(const Preparation& prepare, Setting component, const QString& value) {
    leavePreparation(component);
    if (value == m_values.text(component))
        return;
    setupOf(component).prepare(value);
    Q_EMIT changed();
    prepare(this, [this, component, value, number = ++m_preparations] {
        if (number == m_preparations && setup(component).phase() == ComponentSetup::Phase::Preparing)
            choose(component, value);
    });
}

bool BottleSettings::leavePreparation(Setting component) {
    if (setup(component).phase() != ComponentSetup::Phase::Preparing)
        return false;
    setupOf(component).leave();
    Q_EMIT changed();
    return true;
}

void BottleSettings::sendComponent(Setting component) {
    const QString name = setup(component).name();
    auto& wanted = m_wanted[size_t(component)];
    if (wanted)
        *wanted = name;
    SettingTable::of(component).send(
        m_bottle, ComponentSetup::valueOf(name), this, [this, component, name](const BusResult& answer) {
            // The signal says more about a refusal because of running programs, and all about the work
            // itself.
            if (answer.ok || answer.isBusy() || answer.timedOut || setup(component).name() != name)
                return;
            qWarning().noquote() << "cannot set up" << name << "in" << m_bottle << answer.errorMessage;
            tell(SettingTable::componentKind(component),
                 [&answer](ComponentSetup* setup) { return setup->fail(answer.errorText()); });
        });
}

void BottleSettings::tell(const QString& kind, const std::function<bool(ComponentSetup*)>& event) {
    Setting component = Setting::Runner;
    if (!SettingTable::settingOfKind(kind, &component) || !event(&setupOf(component)))
        return;
    const ComponentSetup& now = setup(component);
    if (!now.isUnderWay()) {
        m_values.set(component, now.good());
        const Undo undo = std::exchange(m_waitingUndo[size_t(component)], {});
        const bool isFailed = now.phase() == ComponentSetup::Phase::Failed;
        if (isFailed)
            restoreRenderer();
        else if (component != Setting::Runner && !now.good().isEmpty())
            m_rendererBefore.clear();
        m_values = SettingRules::withRendererOfLayers(m_values);
        if (!isFailed && !undo.sent.isEmpty())
            offerUndo(component, undo);
    }
    announce();
}

void BottleSettings::onSetupDone(const QString& kind, const QString& name, const QString& result) {
    qInfo() << "setup result: " << m_bottle << kind << name << result;
    const QJsonObject object = QJsonDocument::fromJson(result.toUtf8()).object();
    const QStringList programs = object.value("busy").toVariant().toStringList();
    Setting component = Setting::Runner;
    const bool isOurs = SettingTable::settingOfKind(kind, &component) && setup(component).isUnderWay() &&
                        setup(component).name() == name;
    if (isOurs && !programs.isEmpty()) {
        tell(kind, [&name](ComponentSetup* setup) { return setup->blocked(name); });
        Q_EMIT programsRunning(component, programs);
        return;
    }
    tell(kind, [&](ComponentSetup* setup) {
        return setup->done(name, object.value("ok").toBool(), ServiceErrorText::of(object));
    });
}

void BottleSettings::answerProgramsRunning(Setting component, bool close) {
    if (setup(component).phase() != ComponentSetup::Phase::Asked)
        return;
    if (!close) {
        cancelSetup(component);
        return;
    }
    // The programs are gone then, so the change is asked for in any case, also when this window has been
    // closed.
    BottlesConfig* service = BottlesConfig::instance();
    const auto wanted = std::make_shared<QString>(setup(component).name());
    m_wanted[size_t(component)] = wanted;
    const auto request = [self = QPointer<BottleSettings>(this), bottle = m_bottle, component, wanted,
                          service, hold = PendingWork::instance()->hold()] {
        if (self) {
            if (self->setup(component).phase() == ComponentSetup::Phase::Asked)
                self->sendComponent(component);
        } else if (!wanted->isEmpty()) {
            SettingTable::of(component).send(
                bottle, ComponentSetup::valueOf(*wanted), service, [hold, wanted](const BusResult& answer) {
                    if (!answer.ok)
                        qWarning().noquote() << "cannot set up" << *wanted << answer.errorMessage;
                });
        }
    };
    BottleTasks::killWineServer(m_bottle, service, request);
}

void BottleSettings::cancelSetup(Setting component) {
    if (leavePreparation(component))
        return;
    const QString name = setup(component).name();
    if (name.isEmpty())
        return;
    if (const auto& wanted = m_wanted[size_t(component)])
        wanted->clear();
    BottlesConfig::instance()->cancelInstallingComponent(
        m_bottle, SettingTable::componentKind(component), name, this, [name](const BusResult& answer) {
            if (!answer.ok)
                qWarning().noquote() << "cannot cancel the setup of" << name << answer.errorMessage;
        });
    setupOf(component).leave();
    m_values.set(component, setup(component).good());
    m_waitingUndo[size_t(component)] = {};
    restoreRenderer();
    announce();
}

/// The choice of a layer has changed the renderer, and no layer has come or is to come.
void BottleSettings::restoreRenderer() {
    if (m_rendererBefore.isEmpty() || SettingRules::usesGraphicsLayers(m_values))
        return;
    const QString before = std::exchange(m_rendererBefore, QString());
    m_values.set(Setting::Renderer, before);
    send(Setting::Renderer, before);
}

/// A layer whose setup ended later would be one that the renderer does not use.
void BottleSettings::cancelGraphics() {
    for (const Setting layer : {Setting::Dxvk, Setting::Vkd3d}) {
        if (setup(layer).isUnderWay())
            cancelSetup(layer);
    }
}

/// A new service does not know what the old one was doing.
void BottleSettings::onServiceLost() {
    for (const Setting component : Components)
        tell(SettingTable::componentKind(component),
             [](ComponentSetup* setup) { return setup->fail(tr("The bottle service has ended.")); });
    load();
}
