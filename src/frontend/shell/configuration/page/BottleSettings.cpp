#include "shell/configuration/page/BottleSettings.h"

#include <QCoreApplication>
#include <QDebug>
#include <algorithm>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentManager.h"
#include "backend/InBackground.h"
#include "backend/PendingWork.h"
#include "probes/GraphicsSupport.h"
#include "shell/configuration/rules/SettingTable.h"

namespace {

constexpr int DpiDelayMs = 600;

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
    SettingValues values = m_beforeKept;
    for (const auto& [setting, value] : qAsConst(m_kept)) {
        const SettingRules::Effect effect = SettingRules::effectOf(values, setting, value);
        values = effect.values;
        if (effect.setsVulkan)
            sendAtEnd(Setting::Renderer, values.value(Setting::Renderer));
        if (setting != Setting::Dpi || !m_dpiTimer.isActive())
            sendAtEnd(setting, value);
    }
    if (m_dpiTimer.isActive())
        sendAtEnd(Setting::Dpi, m_values.value(Setting::Dpi));
}

/// The process stays until the service has answered; a refusal is only logged.
void BottleSettings::sendAtEnd(Setting setting, const QVariant& value) const {
    if (setting == Setting::Dpi)
        qDebug() << "setdpi: " << value.toInt();
    const auto onAnswer = [setting, bottle = m_bottle,
                           hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "the setting" << SettingTable::of(setting).objectName << "of" << bottle
                                 << "was not changed:" << answer.errorMessage;
    };
    SettingTable::of(setting).send(m_bottle, value, qApp, onAnswer);
}

void BottleSettings::load() {
    qInfo().noquote() << "Loading" << m_bottle;
    setState(State::Loading);
    const int number = ++m_loads;
    const auto read = [this, number] {
        ComponentManager::instance()->update(this, [this] { announce(); });
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
    SettingValues values = m_kept.isEmpty() ? m_values : m_beforeKept;
    values.read(record);
    if (m_dpiTimer.isActive())
        values.set(Setting::Dpi, m_values.value(Setting::Dpi));
    for (const Setting component : Components) {
        setupOf(component).read(values.text(component));
        // One that is being prepared is not asked for yet.
        if (setup(component).isUnderWay() && setup(component).phase() != ComponentSetup::Phase::Preparing)
            values.set(component, ComponentSetup::valueOf(setup(component).name()));
    }
    m_values = SettingRules::withRendererOfLayers(values);
    readInstalling();
    if (m_shownRunner == m_values.text(Setting::Runner))
        checkNtSync();  // otherwise the new one is looked at
    setState(State::Ready);
    chooseKept();
    announce();
    if (isSent())
        Q_EMIT sent();
}

void BottleSettings::setState(State state, const QString& errorText) {
    m_state = state;
    m_errorText = errorText;
    if (state == State::Failed)
        m_kept.clear();
    Q_EMIT stateChanged();
    if (state == State::Failed && isSent())
        Q_EMIT sent();
}

/// That something has changed, and first whether the runner has.
void BottleSettings::announce() {
    const QString runner = m_values.text(Setting::Runner);
    if (m_state != State::Loading && m_shownRunner != runner) {
        const bool isFirst = !m_shownRunner;
        m_shownRunner = runner;
        checkNtSync();
        if (!isFirst)
            Q_EMIT runnerChanged();
    }
    Q_EMIT changed();
}

void BottleSettings::choose(Setting setting, const QVariant& value) {
    leavePreparation(setting);
    if (value == m_values.value(setting))
        return;
    if (m_state != State::Ready) {
        keep(setting, value);
        return;
    }
    if (setting != Setting::Dpi)
        flushDpi();
    const bool endsLayers = SettingRules::endsGraphicsLayers(setting, value);
    if (setting == Setting::Renderer)
        m_rendererBefore.clear();
    if (endsLayers)
        cancelGraphics();
    const SettingRules::Effect effect = SettingRules::effectOf(m_values, setting, value);
    Undo undo{m_values, {setting}};
    for (const Setting other : {Setting::Renderer, Setting::Dxvk, Setting::Vkd3d}) {
        if (other != setting && effect.values.value(other) != m_values.value(other))
            undo.sent.append(other);
    }
    m_values = effect.values;
    if (endsLayers) {
        setupOf(Setting::Dxvk).read({});
        setupOf(Setting::Vkd3d).read({});
    }
    if (effect.setsVulkan) {
        if (m_rendererBefore.isEmpty())
            m_rendererBefore = undo.before.text(Setting::Renderer);
        send(Setting::Renderer, m_values.value(Setting::Renderer));
    }
    if (isComponent(setting)) {
        if (!setup(setting).isUnderWay())
            m_waitingUndo[size_t(setting)] = undo;
        setupOf(setting).choose(value.toString());
        sendComponent(setting);
    } else if (setting == Setting::Dpi) {
        if (!m_dpiTimer.isActive())
            m_dpiUndo = undo;
        m_dpiTimer.start();
    } else {
        send(setting, value);
        offerUndo(setting, undo);
    }
    announce();
}

/// While the record is read again, which may say what was there before the choice. Shown at once.
void BottleSettings::keep(Setting setting, const QVariant& value) {
    if (m_state == State::Failed || m_record.isEmpty())
        return;
    if (m_kept.isEmpty())
        m_beforeKept = m_values;
    const auto isSame = [setting](const auto& choice) { return choice.first == setting; };
    m_kept.erase(std::remove_if(m_kept.begin(), m_kept.end(), isSame), m_kept.end());
    m_kept.append({setting, value});
    m_values.set(setting, value);
    announce();
}

void BottleSettings::chooseKept() {
    const auto kept = std::exchange(m_kept, {});
    for (const auto& [setting, value] : kept)
        choose(setting, value);
}

void BottleSettings::offerUndo(Setting setting, const Undo& undo) {
    m_undo = undo;
    Q_EMIT undoable(setting);
}

void BottleSettings::flushDpi() {
    if (!m_dpiTimer.isActive())
        return;
    m_dpiTimer.stop();
    sendDpi();
}

void BottleSettings::sendDpi() {
    const QVariant dpi = m_values.value(Setting::Dpi);
    qDebug() << "setdpi: " << dpi.toInt();
    send(Setting::Dpi, dpi);
    offerUndo(Setting::Dpi, m_dpiUndo);
}

void BottleSettings::send(Setting setting, const QVariant& value) {
    ++m_openSends;
    SettingTable::of(setting).send(m_bottle, value, this, [this, setting](const BusResult& answer) {
        --m_openSends;
        if (!answer.ok && !answer.timedOut)
            takeBack(setting, answer);
        if (isSent())
            Q_EMIT sent();
    });
}

/// A refused change, by reading the record again.
void BottleSettings::takeBack(Setting setting, const BusResult& answer) {
    qWarning().noquote() << "the setting" << SettingTable::of(setting).objectName << "of" << m_bottle
                         << "was not changed:" << answer.errorMessage;
    if (m_undo.sent.contains(setting))
        m_undo = {};
    announce();
    Q_EMIT refused(tr("%1 could not be changed: %2").arg(SettingTable::label(setting), answer.errorText()));
    if (!answer.serviceGone)
        load();
}

void BottleSettings::whenSent(QObject* context, const std::function<void()>& then) {
    flushDpi();
    if (isSent()) {
        then();
        return;
    }
    auto* once = new QObject(context);
    connect(this, &BottleSettings::sent, once, [this, once, then] {
        disconnect(once);
        once->deleteLater();
        then();
    });
}

void BottleSettings::undo() {
    if (!canUndo())
        return;
    const Undo last = std::exchange(m_undo, {});
    if (m_state != State::Ready) {
        for (const Setting setting : last.sent)
            keep(setting, last.before.value(setting));
        return;
    }
    if (last.sent.contains(Setting::Dpi))
        m_dpiTimer.stop();
    else
        flushDpi();
    if (last.sent.contains(Setting::Renderer))
        m_rendererBefore.clear();
    for (const Setting setting : last.sent) {
        m_values.set(setting, last.before.value(setting));
        if (isComponent(setting)) {
            setupOf(setting).choose(last.before.text(setting));
            sendComponent(setting);
        } else {
            send(setting, last.before.value(setting));
        }
    }
    announce();
}

void BottleSettings::checkNtSync() {
    const int number = ++m_ntSyncChecks;
    if (!SettingRules::canUseNtSync(m_values.text(Setting::Runner)))
        return;
    const auto check = [] { return kernelModule("ntsync"); };
    inBackground(this, check, [this, number](KernelModule ntSync) {
        if (number != m_ntSyncChecks || ntSync == m_ntSync)
            return;
        m_ntSync = ntSync;
        announce();
    });
}

void BottleSettings::checkGraphics() {
    whenDone(this, GraphicsSupport::facts(), [this](const GraphicsSupport::Facts& facts) {
        qInfo() << "dxvk supported: " << facts.dxvk;
        m_graphics = {true, facts.available, facts.dxvk, facts.vkd3d};
        announce();
    });
}
