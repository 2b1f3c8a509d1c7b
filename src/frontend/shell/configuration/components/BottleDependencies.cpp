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

namespace {

void sendRequest(const QString& bottle, const QString& name, bool again, QObject* context,
                 const std::function<void(const BusResult&)>& onAnswer) {
    if (again)
        BottlesConfig::instance()->reinstallDependency(bottle, name, context, onAnswer);
    else
        BottlesConfig::instance()->installDependency(bottle, name, context, onAnswer);
}

}  // namespace

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
                if (!isForeign(bottle, name) && m_states.describe(name, description))
                    tell({name});
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
    m_requests.clear();
    m_blocked = std::make_shared<QStringList>();
    m_facts->setBottle(bottle);
    m_isReadingQueue = m_readsQueueAgain = false;
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

/// One question at a time; what happens meanwhile is asked about by another one.
void BottleDependencies::readQueue() {
    if (m_isReadingQueue) {
        m_readsQueueAgain = true;
        return;
    }
    m_isReadingQueue = true;
    const auto onAnswer = [this, number = m_bottles](const BusResult& answer) {
        if (number != m_bottles)
            return;
        m_isReadingQueue = false;
        if (answer.text.startsWith('['))
            takeQueue(answer.strings());
        if (std::exchange(m_readsQueueAgain, false))
            readQueue();
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
            m_facts->fetch({name});
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
        if (number != m_bottles || attempt != m_attempts.value(name))
            return;
        // A signal says more about a refusal because of running programs, and all about the work itself.
        if (answer.ok)
            readQueue();
        else if (!answer.isBusy() && !answer.timedOut)
            onRefused(name, answer);
    };
    sendRequest(m_bottle, name, m_requests.value(name), this, onAnswer);
}

void BottleDependencies::onRefused(const QString& name, const BusResult& answer) {
    qWarning().noquote() << "cannot install" << name << "into" << m_bottle << answer.errorMessage;
    if (m_states.fail(name, answer.errorText()))
        finish(name, {name});
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
    const bool isInstalled = result["ok"].toBool();
    qInfo().noquote() << name << "installed?" << isInstalled << result["error"].toString();
    // Others need less once it is there.
    if (isInstalled)
        m_facts->forgetAll();
    else
        m_facts->forget(names);
    finish(name, names);
}

/// The end of a request, in whatever way.
void BottleDependencies::finish(const QString& name, const QStringList& changed) {
    m_requests.remove(name);
    m_blocked->removeAll(name);
    tell(changed);
    Q_EMIT setupDone();
}

void BottleDependencies::withdraw(const QString& name) {
    m_requests.remove(name);
    m_blocked->removeAll(name);
    if (m_states.withdraw(name))
        tell({name});
}

/// Somebody else's request is somebody else's question.
void BottleDependencies::onBusy(const QString& name, const QStringList& programs) {
    if (!m_requests.contains(name)) {
        withdraw(name);
        return;
    }
    if (!state(name).isUnderWay() || m_blocked->contains(name))
        return;
    *m_blocked += name;
    if (m_blocked->size() == 1)
        Q_EMIT programsRunning(programs);
}

void BottleDependencies::answerProgramsRunning(bool close) {
    if (m_blocked->isEmpty())
        return;
    if (!close) {
        for (const QString& name : QStringList(*m_blocked))
            withdraw(name);
        Q_EMIT setupDone();
        return;
    }
    // The programs are gone then, so the request is made in any case, also when this window has been closed.
    BottlesConfig* service = BottlesConfig::instance();
    const auto request = [self = QPointer<BottleDependencies>(this), number = m_bottles, bottle = m_bottle,
                          requests = m_requests, blocked = m_blocked, service,
                          hold = PendingWork::instance()->hold()] {
        for (const QString& name : std::exchange(*blocked, {})) {
            if (self && number == self->m_bottles)
                self->send(name);
            else
                sendRequest(bottle, name, requests.value(name), service,
                            [hold, name](const BusResult& answer) {
                                if (!answer.ok)
                                    qWarning().noquote() << "cannot install" << name << answer.errorMessage;
                            });
        }
    };
    BottleTasks::killWineServer(m_bottle, service, request);
}

void BottleDependencies::cancel(const QString& name) {
    if (!state(name).isUnderWay())
        return;
    if (m_blocked->contains(name)) {
        withdraw(name);
        return;
    }
    if (m_cancelling.contains(name))
        return;
    m_cancelling.insert(name);
    const auto onAnswer = [self = QPointer<BottleDependencies>(this), name, attempt = m_attempts.value(name),
                           number = m_bottles,
                           hold = PendingWork::instance()->hold()](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "Failed to cancel installing dependencies:" << answer.errorMessage;
        if (self)
            self->m_cancelling.remove(name);
        if (self && number == self->m_bottles)
            self->onCancelled(name, attempt, answer);
    };
    // Unnamed, a request for the one is cancelled that the service installs just now.
    BottlesConfig* service = BottlesConfig::instance();
    const bool isAlone = m_states.queue().size() == 1 && m_requests.contains(name);
    if (isAlone && m_states.isAtWork(name))
        service->cancelInstallingDependency(m_bottle, service, onAnswer);
    else
        BottleRepair::instance()->cancelDependency(m_bottle, name, onAnswer);
}

/// Whether it was there, and whether somebody else wants it, the queue tells.
void BottleDependencies::onCancelled(const QString& name, int attempt, const BusResult& answer) {
    if (!answer.ok) {
        Q_EMIT refused(answer.errorText());
        return;
    }
    if (attempt == m_attempts.value(name))
        m_requests.remove(name);
    readQueue();
}

/// A new service does not know what the old one was doing. It was not doing what waits for the user's answer.
void BottleDependencies::onServiceLost() {
    m_isReadingQueue = m_readsQueueAgain = false;
    BusResult gone;
    gone.serviceGone = true;
    QStringList failed;
    for (const QString& name : QStringList(m_states.queue())) {
        if (m_blocked->contains(name))
            continue;
        m_requests.remove(name);
        m_states.fail(name, gone.errorText());
        failed += name;
    }
    tell(failed);
    if (!failed.isEmpty())
        Q_EMIT setupDone();
}
