#include "shell/configuration/page/BottleSettings.h"

#include <QDBusServiceWatcher>
#include <QDebug>
#include <QJsonDocument>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/InBackground.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "backend/ServiceNames.h"
#include "core/base/ToolProcess.h"
#include "launch/run/BottleTasks.h"
#include "probes/GraphicsSupport.h"
#include "shell/configuration/rules/SettingTable.h"

namespace {

constexpr int DpiDelayMs = 600;
constexpr Setting Components[] = {Setting::Dxvk, Setting::Vkd3d, Setting::Runner};

bool isComponent(Setting setting) {
    return SettingTable::of(setting).control == SettingControl::Component;
}

}  // namespace

BottleSettings::BottleSettings(const QString& bottle, QObject* parent) : QObject(parent), m_bottle(bottle) {
    m_dpiTimer.setSingleShot(true);
    m_dpiTimer.setInterval(DpiDelayMs);
    connect(&m_dpiTimer, &QTimer::timeout, this, &BottleSettings::sendDpi);
    followService();
    checkGraphics();
}

BottleSettings::~BottleSettings() {
    if (m_dpiTimer.isActive())
        BottlesConfig::instance()->setDPI(m_bottle, m_values.value(Setting::Dpi).toInt());
}

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
    whenServiceIsLost(this, [this] { onServiceLost(); });
    auto* arrival = new QDBusServiceWatcher(ServiceNames::Service, QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForRegistration, this);
    connect(arrival, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (m_state == State::Failed)
            load();
    });
}

/// Not before the service has answered, since the first use of the catalogue waits for it.
void BottleSettings::followComponents() {
    if (m_followsComponents)
        return;
    m_followsComponents = true;
    ComponentManager* manager = ComponentManager::instance();
    connect(manager, &ComponentManager::refresh, this, &BottleSettings::changed);
    connect(manager, &ComponentManager::updateProgress, this,
            [this](const QString& kind, const QString& name, uint received, uint total) {
                tell(kind, [=](ComponentSetup* setup) { return setup->progress(name, received, total); });
            });
}

void BottleSettings::load() {
    qInfo().noquote() << "Loading" << m_bottle;
    setState(State::Loading);
    const int number = ++m_loads;
    const auto read = [this, number] {
        BottlesConfig::instance()->watchBottle(m_bottle, this, [this, number](const BusResult& result) {
            if (number == m_loads)
                onRecord(result);
        });
    };
    if (m_readBefore)
        m_readBefore(read);
    else
        read();
}

void BottleSettings::onRecord(const BusResult& result) {
    const QJsonObject record = result.object();
    if (BottleRecord::path(record).isEmpty()) {
        qWarning().noquote() << "cannot read the settings of" << m_bottle << result.errorMessage;
        setState(State::Failed, result.ok ? QString() : result.errorText());
        return;
    }
    qInfo() << record;
    m_record = record;
    SettingValues values = m_values;
    values.read(record);
    if (m_dpiTimer.isActive())
        values.set(Setting::Dpi, m_values.value(Setting::Dpi));
    for (const Setting component : Components) {
        setupOf(component).read(values.text(component));
        if (setup(component).isUnderWay())
            values.set(component, m_values.value(component));
    }
    m_values = values;
    followComponents();
    readInstalling();
    checkNtSync();
    setState(State::Ready);
    Q_EMIT changed();
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
        Q_EMIT changed();
    };
    // Not from another thread: the signal of the end could overtake this answer.
    BottlesConfig::instance()->watchInstallingComponents(m_bottle, ComponentKind::runner(), this, adopt);
}

void BottleSettings::setState(State state, const QString& errorText) {
    m_state = state;
    m_errorText = errorText;
    Q_EMIT stateChanged();
}

ComponentOffer BottleSettings::offer(Setting component) const {
    if (!m_followsComponents)
        return ComponentOffer::of(component, {}, {}, m_values.text(component), m_graphics);
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
    if (m_state != State::Ready || value == m_values.text(component))
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

void BottleSettings::choose(Setting setting, const QVariant& value) {
    leavePreparation(setting);
    if (m_state != State::Ready || value == m_values.value(setting))
        return;
    if (SettingRules::endsGraphicsLayers(setting, value))
        cancelGraphics();
    const SettingRules::Effect effect = SettingRules::effectOf(m_values, setting, value);
    Undo undo{m_values, {setting}};
    for (const Setting other : {Setting::Renderer, Setting::Dxvk, Setting::Vkd3d}) {
        if (other != setting && effect.values.value(other) != m_values.value(other))
            undo.sent.append(other);
    }
    if (setting == Setting::Dpi && m_dpiTimer.isActive())
        undo = m_undo;
    m_values = effect.values;
    if (effect.setsVulkan)
        send(Setting::Renderer, m_values.value(Setting::Renderer));
    if (isComponent(setting)) {
        if (!setup(setting).isUnderWay())
            m_waitingUndo[size_t(setting)] = undo;
        setupOf(setting).choose(value.toString());
        sendComponent(setting);
    } else if (setting == Setting::Dpi) {
        m_undo = undo;
        m_dpiTimer.start();
    } else {
        m_undo = undo;
        send(setting, value);
        Q_EMIT undoable(setting);
    }
    if (setting == Setting::Runner) {
        checkNtSync();
        Q_EMIT runnerChanged();
    }
    Q_EMIT changed();
}

void BottleSettings::sendDpi() {
    const QVariant dpi = m_values.value(Setting::Dpi);
    qDebug() << "setdpi: " << dpi.toInt();
    send(Setting::Dpi, dpi);
    Q_EMIT undoable(Setting::Dpi);
}

/// A refused change is taken back by reading the record again.
void BottleSettings::send(Setting setting, const QVariant& value) {
    SettingTable::of(setting).send(m_bottle, value, this, [this, setting](const BusResult& answer) {
        if (answer.ok || answer.timedOut)
            return;
        qWarning().noquote() << "the setting" << SettingTable::of(setting).objectName << "of" << m_bottle
                             << "was not changed:" << answer.errorMessage;
        m_undo = {};
        Q_EMIT refused(
            tr("%1 could not be changed: %2").arg(SettingTable::label(setting), answer.errorText()));
        if (!answer.serviceGone)
            load();
    });
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
        const bool isOther = m_values.text(component) != now.good();
        m_values.set(component, now.good());
        if (isOther && component == Setting::Runner) {
            checkNtSync();
            Q_EMIT runnerChanged();
        }
        if (now.phase() == ComponentSetup::Phase::Failed)
            restoreRenderer(component);
        const Undo undo = std::exchange(m_waitingUndo[size_t(component)], {});
        if (!undo.sent.isEmpty()) {
            m_undo = undo;
            Q_EMIT undoable(component);
        }
    }
    Q_EMIT changed();
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
    restoreRenderer(component);
    if (component == Setting::Runner) {
        checkNtSync();
        Q_EMIT runnerChanged();
    }
    Q_EMIT changed();
}

/// The choice of a layer has changed the renderer, and the layer has not come.
void BottleSettings::restoreRenderer(Setting component) {
    const Undo given = std::exchange(m_waitingUndo[size_t(component)], {});
    if (!given.sent.contains(Setting::Renderer) || SettingRules::usesGraphicsLayers(m_values))
        return;
    m_values.set(Setting::Renderer, given.before.value(Setting::Renderer));
    send(Setting::Renderer, given.before.value(Setting::Renderer));
}

/// A layer whose setup ended later would be one that the renderer does not use.
void BottleSettings::cancelGraphics() {
    for (const Setting layer : {Setting::Dxvk, Setting::Vkd3d}) {
        m_waitingUndo[size_t(layer)] = {};  // there is a new renderer
        if (setup(layer).isUnderWay())
            cancelSetup(layer);
    }
}

void BottleSettings::undo() {
    if (!canUndo() || m_state != State::Ready)
        return;
    const Undo last = std::exchange(m_undo, {});
    m_dpiTimer.stop();
    for (const Setting setting : last.sent) {
        m_values.set(setting, last.before.value(setting));
        if (isComponent(setting)) {
            setupOf(setting).choose(last.before.text(setting));
            sendComponent(setting);
        } else {
            send(setting, last.before.value(setting));
        }
    }
    if (last.sent.contains(Setting::Runner)) {
        checkNtSync();
        Q_EMIT runnerChanged();
    }
    Q_EMIT changed();
}

/// A new service does not know what the old one was doing.
void BottleSettings::onServiceLost() {
    for (const Setting component : Components)
        tell(SettingTable::componentKind(component),
             [](ComponentSetup* setup) { return setup->fail(tr("The bottle service has ended.")); });
    load();
}

void BottleSettings::checkNtSync() {
    const int number = ++m_ntSyncChecks;
    if (!SettingRules::canUseNtSync(m_values.text(Setting::Runner)))
        return;
    const auto check = [] { return ToolProcess::runQuietly("modinfo", {"-n", "ntsync"}).succeeded(); };
    inBackground(this, check, [this, number](bool hasNtSync) {
        if (number != m_ntSyncChecks || hasNtSync == m_hasNtSync)
            return;
        m_hasNtSync = hasNtSync;
        Q_EMIT changed();
    });
}

void BottleSettings::checkGraphics() {
    whenDone(this, GraphicsSupport::facts(), [this](const GraphicsSupport::Facts& facts) {
        qInfo() << "dxvk supported: " << facts.dxvk;
        m_graphics = {true, facts.available, facts.dxvk, facts.vkd3d};
        Q_EMIT changed();
    });
}
