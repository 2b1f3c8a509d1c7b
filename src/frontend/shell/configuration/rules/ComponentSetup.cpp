#include "shell/configuration/rules/ComponentSetup.h"

#include <QCoreApplication>

QString ComponentSetup::shown(const QString& value) {
    return value.isEmpty() ? QCoreApplication::translate("ComponentsSwitcherWidget", "Disabled") : value;
}

void ComponentSetup::setGood(const QString& value) {
    *this = ComponentSetup();
    m_good = value;
}

void ComponentSetup::choose(const QString& value) {
    m_name = nameOf(value);
    m_reason.clear();
    m_percent = -1;
    m_phase = Phase::Asked;
}

void ComponentSetup::prepare(const QString& value) {
    choose(value);
    m_phase = Phase::Preparing;
}

bool ComponentSetup::adopt(const QJsonObject& installing) {
    for (auto it = installing.begin(); it != installing.end(); ++it) {
        const bool isSettingUp = it.value() == QLatin1String("SETUPING");
        if (!isSettingUp && it.value() != QLatin1String("DOWNLOADING"))
            continue;
        choose(valueOf(it.key()));
        m_phase = isSettingUp ? Phase::SettingUp : Phase::Waiting;
        return true;
    }
    return false;
}

bool ComponentSetup::enter(Phase phase) {
    const bool isNew = m_phase != phase;
    m_phase = phase;
    return isNew;
}

/// A phase that is over does not come back.
bool ComponentSetup::waiting(const QString& name) {
    return isOurs(name) && m_phase == Phase::Asked && enter(Phase::Waiting);
}

bool ComponentSetup::progress(const QString& name, quint64 received, quint64 total) {
    if (!isOurs(name) || m_phase == Phase::SettingUp)
        return false;
    const int percent = total > 0 ? int(qMin<quint64>(100, received * 100 / total)) : -1;
    const bool isFurther = percent > m_percent;
    m_percent = qMax(m_percent, percent);
    return enter(Phase::Downloading) || isFurther;
}

bool ComponentSetup::started(const QString& name) {
    return isOurs(name) && enter(Phase::SettingUp);
}

bool ComponentSetup::blocked(const QString& name) {
    if (!isOurs(name))
        return false;
    m_percent = -1;
    return enter(Phase::Asked);
}

bool ComponentSetup::done(const QString& name, bool isGood, const QString& reason) {
    if (isOurs(name)) {
        if (!isGood)
            return fail(reason);
        setGood(valueOf(name));
        return true;
    }
    if (m_phase != Phase::Idle || !isGood || valueOf(name) == m_good)
        return false;
    setGood(valueOf(name));
    return true;
}

bool ComponentSetup::fail(const QString& reason) {
    if (!isUnderWay() || m_phase == Phase::Preparing)
        return false;
    m_reason = reason;
    return enter(Phase::Failed);
}

void ComponentSetup::leave() {
    setGood(QString(m_good));
}

QString ComponentSetup::text() const {
    const QString name = shown(valueOf(m_name));
    switch (m_phase) {
        case Phase::Preparing:
            return QCoreApplication::translate("ComponentsSwitcherWidget", "Preparing %1").arg(name);
        case Phase::Waiting:
            return QCoreApplication::translate("ComponentsSwitcherWidget", "Waiting for download %1")
                .arg(name);
        case Phase::Downloading:
            return QCoreApplication::translate("ComponentsSwitcherWidget", "downloading...");
        case Phase::SettingUp:
            return QCoreApplication::translate("ComponentsSwitcherWidget", "Setuping %1").arg(name);
        case Phase::Failed:
            return QCoreApplication::translate("ComponentsSwitcherWidget", "Setup failed: %1").arg(name);
        default:
            return {};
    }
}
