#include "shell/configuration/components/DependencyStates.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "backend/ServiceErrorText.h"
#include "backend/TextUtils.h"

namespace {

using Phase = DependencyState::Phase;

constexpr int DownloadShare = 50;  ///< of 100, where anything is downloaded

bool isCancelled(const QJsonObject& result) {
    for (const QJsonValue& reason : result["reasons"].toArray()) {
        if (reason["code"].toString() == QLatin1String("cancelled"))
            return true;
    }
    return false;
}

}  // namespace

DependencyState::Action DependencyState::action() const {
    if (isUnderWay())
        return Cancel;
    return isInstalled ? Reinstall : Install;
}

QString DependencyState::text() const {
    switch (phase) {
        case Phase::Waiting:
            return tr("Waiting for Download");
        case Phase::Downloading:
            return total == 0 ? TextUtils::formatSize(qint64(received))
                              : QString("%1/%2").arg(TextUtils::formatSize(qint64(received)),
                                                     TextUtils::formatSize(qint64(total)));
        case Phase::Installing:
            return tr("Installing");
        case Phase::Failed:
            return tr("Installation Failed");
        default:
            return isInstalled ? tr("Installed") : QString();
    }
}

bool DependencyStates::enter(const QString& name) {
    if (m_queue.contains(name))
        return false;
    m_queue += name;
    const bool isInstalled = of(name).isInstalled;
    m_states[name] = {};
    m_states[name].phase = Phase::Waiting;
    m_states[name].isInstalled = isInstalled;
    return true;
}

void DependencyStates::leave(const QString& name, Phase phase, const QString& reason) {
    m_queue.removeAll(name);
    DependencyState& state = m_states[name];
    state.phase = phase;
    state.reason = reason;
    state.description.clear();
}

QStringList DependencyStates::readInstalled(const QStringList& names) {
    QStringList changed;
    for (auto it = m_states.begin(); it != m_states.end(); ++it) {
        if (!it->isInstalled || names.contains(it.key()))
            continue;
        it->isInstalled = false;
        changed += it.key();
    }
    for (const QString& name : names) {
        DependencyState& state = m_states[name];
        if (!state.isInstalled)
            changed += name;
        state.isInstalled = true;
    }
    return changed;
}

QStringList DependencyStates::adopt(const QStringList& queue) {
    QStringList added;
    for (const QString& name : queue) {
        if (!name.isEmpty() && enter(name))
            added += name;
    }
    if (queue.isEmpty() || queue.first().isEmpty())
        return added;
    // The service's order, and then what it has not been told yet.
    QStringList others = m_queue;
    for (const QString& name : queue)
        others.removeAll(name);
    m_queue = queue + others;
    m_queue.removeAll({});
    m_queue.removeDuplicates();
    if (of(queue.first()).phase == Phase::Waiting && installing(queue.first()) &&
        !added.contains(queue.first()))
        added += queue.first();
    return added;
}

bool DependencyStates::request(const QString& name) {
    return enter(name);
}

bool DependencyStates::download(const QString& name, quint64 received, quint64 total) {
    if (!of(name).isUnderWay())
        return false;
    DependencyState& state = m_states[name];
    state.phase = Phase::Downloading;
    state.received = received;
    state.total = total;
    // Of several files each begins anew.
    if (total > 0)
        state.percent = qMax(state.percent, int(qMin(received, total) * DownloadShare / total));
    return true;
}

bool DependencyStates::step(const QString& name, int done, int total) {
    if (!of(name).isUnderWay() || total <= 0)
        return false;
    DependencyState& state = m_states[name];
    const int begin = state.total > 0 ? DownloadShare : 0;
    state.percent = qMax(state.percent, begin + qBound(0, done, total) * (100 - begin) / total);
    return true;
}

bool DependencyStates::installing(const QString& name) {
    if (!of(name).isUnderWay() || of(name).phase == Phase::Installing)
        return false;
    m_states[name].phase = Phase::Installing;
    return true;
}

bool DependencyStates::describe(const QString& name, const QString& description) {
    const bool isNew = installing(name);
    if (!of(name).isUnderWay() || (!isNew && of(name).description == description))
        return false;
    m_states[name].description = description;
    return true;
}

bool DependencyStates::isAtWork(const QString& name) const {
    const DependencyState::Phase phase = of(name).phase;
    return phase == Phase::Downloading || phase == Phase::Installing;
}

bool DependencyStates::fail(const QString& name, const QString& reason) {
    const DependencyState state = of(name);
    // One that is installed stays so, whoever else has tried it again.
    if (!state.isUnderWay() && (state.isInstalled || state.phase == Phase::Failed))
        return false;
    leave(name, Phase::Failed, reason);
    return true;
}

bool DependencyStates::withdraw(const QString& name) {
    if (!of(name).isUnderWay())
        return false;
    leave(name, Phase::Idle);
    return true;
}

QStringList DependencyStates::done(const QString& name, const QJsonObject& result) {
    if (!result["ok"].toBool()) {
        const bool isChanged =
            isCancelled(result) ? withdraw(name) : fail(name, ServiceErrorText::of(result));
        return isChanged ? QStringList{name} : QStringList();
    }
    QStringList changed{name};
    for (const QJsonValue& other : QJsonDocument::fromJson(result["data"].toString().toUtf8()).array())
        changed += other.toString();
    changed.removeAll({});
    changed.removeDuplicates();
    for (const QString& installed : qAsConst(changed)) {
        DependencyState& state = m_states[installed];
        state.isInstalled = true;
        // One that is to be installed by itself, too, goes on.
        if (installed == name || !state.isUnderWay())
            leave(installed, Phase::Idle);
    }
    return changed;
}
