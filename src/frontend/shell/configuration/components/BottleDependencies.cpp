#include "shell/configuration/components/BottleDependencies.h"

#include <QDebug>
#include <QJsonArray>

#include "backend/BottleRepair.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ServiceErrorText.h"
#include "backend/ServiceLoss.h"
#include "launch/run/BottleTasks.h"
#include "shell/configuration/components/DependencyFacts.h"

BottleDependencies::BottleDependencies(QObject* parent)
    : QObject(parent), m_facts(new DependencyFacts(this)) {
    followService();
}

void BottleDependencies::followService() {
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::dependencyDownloadProgress, this,
            [this](const QString& bottle, const QString& name, uint received, uint total) {
                if (isForeign(bottle, name) || !m_states.download(name, received, total))
                    return;
                Q_EMIT changed(name);
                Q_EMIT queueChanged();
            });
    connect(service, &BottlesConfig::dependencySetupDescription, this,
            [this](const QString& bottle, const QString& name, const QString& description) {
                if (isForeign(bottle, name))
                    return;
                m_description = description;
                if (m_states.installing(name))
                    Q_EMIT changed(name);
                Q_EMIT queueChanged();
            });
    connect(service, &BottlesConfig::dependencySetupStepNotify, this,
            [this](const QString& bottle, const QString& name, int done, int total) {
                if (!isForeign(bottle, name) && m_states.step(name, done, total))
                    Q_EMIT queueChanged();
            });
    connect(service, &BottlesConfig::dependecyInstalled, this,
            [this](const QString& bottle, const QString& name, const QJsonObject& result) {
                if (!m_bottle.isEmpty() && bottle == m_bottle)
                    onInstalled(name, result);
            });
    whenServiceIsLost(this, [this] { onServiceLost(); });
}

/// What is told of this bottle, but of a component that nobody here knows to be under way, belongs to
/// somebody else's request: the service is asked.
bool BottleDependencies::isForeign(const QString& bottle, const QString& name) {
    if (m_bottle.isEmpty() || bottle != m_bottle)
        return true;
    if (!state(name).isUnderWay()) {
        readQueue();
        return true;
    }
    return false;
}

void BottleDependencies::setBottle(const QString& bottle) {
    if (bottle == m_bottle)
        return;
    ++m_bottles;
    m_bottle = bottle;
    m_states = {};
    m_description.clear();
    m_requests.clear();
    m_blocked.clear();
    m_facts->setBottle(bottle);
    m_isReadingQueue = false;
}

void BottleDependencies::load(const QStringList& installed) {
    tell(m_states.readInstalled(installed));
    const auto read = [bottle = m_bottle] {
        return BottlesConfig::instance()->getInstallingDependency(bottle);
    };
    callServiceAsync(this, read, [this, number = m_bottles](const QString& name) {
        if (number != m_bottles || name.isEmpty())
            return;
        const QStringList found = m_states.adopt({name});
        tell(found);
        if (!found.isEmpty())
            Q_EMIT startSetup(name, false);
        readQueue();
    });
}

void BottleDependencies::readQueue() {
    if (std::exchange(m_isReadingQueue, true))
        return;
    const auto onAnswer = [this, number = m_bottles](const BusResult& answer) {
        if (number != m_bottles)
            return;
        m_isReadingQueue = false;
        if (answer.text.startsWith('['))
            takeQueue(answer.strings());
    };
    BottleRepair::instance()->queuedDependencies(m_bottle, this, onAnswer);
}

/// Signals come in the order of the answers to watched calls: what somebody else has asked for and is not in
/// the queue has ended.
void BottleDependencies::takeQueue(const QStringList& queue) {
    QStringList changed;
    for (const QString& name : QStringList(m_states.queue())) {
        if (!m_requests.contains(name) && !queue.contains(name) && m_states.withdraw(name))
            changed += name;
    }
    tell(changed + m_states.adopt(queue));
}

void BottleDependencies::tell(const QStringList& names) {
    for (const QString& name : names)
        Q_EMIT changed(name);
    if (!names.isEmpty())
        Q_EMIT queueChanged();
}

void BottleDependencies::install(const QString& name) {
    if (state(name).isUnderWay())
        return;
    qInfo().noquote() << "install" << name;
    m_requests.insert(name, false);
    Q_EMIT startSetup(name, true);
    request(name);
}

void BottleDependencies::reinstall(const QString& name) {
    if (state(name).isUnderWay())
        return;
    qInfo().noquote() << "reinstall" << name;
    m_requests.insert(name, true);
    request(name);
}

void BottleDependencies::installFrom(const QString& path, const QString& name) {
    BottleRepair::instance()->takeFile(
        m_bottle, name, path, this, [this, name, number = m_bottles](const BusResult& answer) {
            if (number != m_bottles)
                return;
            const QJsonObject result = answer.object();
            if (!answer.ok || !result["ok"].toBool()) {
                Q_EMIT refused(answer.ok ? ServiceErrorText::of(result) : answer.errorText());
                return;
            }
            m_facts->forget({name});
            install(name);
        });
}

void BottleDependencies::request(const QString& name) {
    m_states.request(name);
    send(name);
    tell({name});
}

void BottleDependencies::send(const QString& name) {
    const int attempt = ++m_attempts[name];
    const auto onAnswer = [this, name, attempt, number = m_bottles](const BusResult& answer) {
        // A signal says more about a refusal because of running programs, and all about the work itself.
        if (answer.ok || answer.isBusy() || answer.timedOut || number != m_bottles ||
            attempt != m_attempts.value(name))
            return;
        qWarning().noquote() << "cannot install" << name << "into" << m_bottle << answer.errorMessage;
        if (m_states.fail(name, answer.errorText()))
            tell({name});
    };
    if (m_requests.value(name))
        BottlesConfig::instance()->reinstallDependency(m_bottle, name, this, onAnswer);
    else
        BottlesConfig::instance()->installDependency(m_bottle, name, this, onAnswer);
}

void BottleDependencies::onInstalled(const QString& name, const QJsonObject& result) {
    const QStringList programs = result["busy"].toVariant().toStringList();
    if (!programs.isEmpty()) {
        onBusy(name, programs);
        return;
    }
    const QStringList names = m_states.done(name, result);
    if (names.isEmpty())
        return;
    qInfo().noquote() << name << "installed?" << result["ok"].toBool() << result["error"].toString();
    m_requests.remove(name);
    m_blocked.removeAll(name);
    m_description.clear();
    m_facts->forget(names);
    tell(names);
    Q_EMIT setupDone();
}

/// Somebody else's request is somebody else's question.
void BottleDependencies::onBusy(const QString& name, const QStringList& programs) {
    if (!m_requests.contains(name)) {
        if (m_states.withdraw(name))
            tell({name});
        return;
    }
    if (!state(name).isUnderWay() || m_blocked.contains(name))
        return;
    m_blocked += name;
    if (m_blocked.size() == 1)
        Q_EMIT programsRunning(programs);
}

void BottleDependencies::answerProgramsRunning(bool close) {
    const QStringList blocked = std::exchange(m_blocked, {});
    if (blocked.isEmpty())
        return;
    if (!close) {
        for (const QString& name : blocked) {
            m_requests.remove(name);
            m_states.withdraw(name);
        }
        tell(blocked);
        Q_EMIT setupDone();
        return;
    }
    BottleTasks::killWineServer(m_bottle, this, [this, blocked, number = m_bottles] {
        for (const QString& name : blocked) {
            if (number == m_bottles && state(name).isUnderWay())
                send(name);
        }
    });
}

void BottleDependencies::cancel(const QString& name) {
    if (!state(name).isUnderWay())
        return;
    if (m_blocked.contains(name)) {
        m_blocked.removeAll(name);
        m_requests.remove(name);
        m_states.withdraw(name);
        tell({name});
        return;
    }
    const auto onAnswer = [self = QPointer<BottleDependencies>(this),
                           hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (answer.ok)
            return;
        qWarning().noquote() << "Failed to cancel installing dependencies:" << answer.errorMessage;
        if (self)
            Q_EMIT self->refused(answer.errorText());
    };
    // Named where another one would be cancelled if this one ended meanwhile.
    BottlesConfig* service = BottlesConfig::instance();
    if (m_states.queue().size() == 1)
        service->cancelInstallingDependency(m_bottle, service, onAnswer);
    else
        BottleRepair::instance()->cancelDependency(m_bottle, name, onAnswer);
}

/// A new service does not know what the old one was doing.
void BottleDependencies::onServiceLost() {
    m_isReadingQueue = false;
    m_requests.clear();
    m_blocked.clear();
    m_description.clear();
    BusResult gone;
    gone.serviceGone = true;
    const QStringList queue = m_states.queue();
    for (const QString& name : queue)
        m_states.fail(name, gone.errorText());
    tell(queue);
    if (!queue.isEmpty())
        Q_EMIT setupDone();
}
