#include "bottleservice/requests/BottleComponentRequests.h"

#include <QDebug>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/jobs/ChangeGraphicsJob.h"
#include "bottleservice/jobs/ChangeRunnerJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/ComponentRequests.h"
#include "bottleservice/requests/RequestChecks.h"

using Fault = Answer::Fault;
using JsonText::compact;

namespace {

const QLatin1String None("-");

}  // namespace

BottleComponentRequests::BottleComponentRequests(BottleEngine* engine, ComponentRequests* components,
                                                 QObject* parent)
    : QObject(parent), m_engine(engine), m_components(components) {
    connect(components, &ComponentRequests::fetched, this, &BottleComponentRequests::onFetched);
}

void BottleComponentRequests::setComponent(const QString& bottle, const QString& kind, const QString& version,
                                           const Reply& reply) {
    if (version != None && !Sources::isPlainName(version)) {
        reply(Answer::failure(Fault::InvalidArgs,
                              QString("\"%1\" is no name of a component.").arg(BottleName::shown(version))));
        return;
    }
    const Answer check = m_engine->bottles().check(bottle);
    if (!check.isGood()) {
        reply(check);
        Q_EMIT setupDone(bottle, kind, version, check);
        return;
    }
    const Change* present = lastChange(bottle, kind);
    if (present && present->name == version && !present->isCancelled) {
        reply(Answer::of());
        return;
    }
    const int id = ++m_lastId;
    m_changes += Change{id, bottle, kind, version, reply, Change::Checking, false, {}};
    m_engine->waitBeforeInstall(bottle, this,
                                [this, id](const QStringList& running) { onProgramsKnown(id, running); });
}

void BottleComponentRequests::onFetched(const QString& kind, const QString& name, const Reason& reason) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.kind != kind || change.name != name || change.state != Change::Downloading)
            continue;
        if (!reason.isEmpty())
            end(change.id, Answer::failure(Fault::Failed, reason));
        else if (Change* waiting = find(change.id))
            setUp(waiting);
    }
}

void BottleComponentRequests::onProgramsKnown(int id, const QStringList& running) {
    Change* change = find(id);
    if (!change)
        return;
    const Change copy = *change;
    if (!running.isEmpty()) {
        end(id, Answer::busy(running));
        copy.reply(Answer::busy(running));
        return;
    }
    // Only now: a request that is refused does not cancel those before it.
    cancelBefore(copy);
    change = find(id);
    copy.reply(Answer::of());
    if (copy.name == None ? copy.kind != "runner" : m_components->store().isInstalled(copy.kind, copy.name)) {
        setUp(change);
        return;
    }
    change->state = Change::Downloading;
    Q_EMIT waiting(copy.bottle, copy.kind, copy.name);
    m_components->obtain(copy.kind, copy.name);
}

void BottleComponentRequests::setUp(Change* change) {
    change->state = Change::SettingUp;
    const Change copy = *change;
    const Reply done = [self = QPointer<BottleComponentRequests>(this), copy](const Answer& answer) {
        if (self)
            self->end(copy.id, answer);
    };
    std::unique_ptr<InstallJob> job;
    if (copy.kind == "runner") {
        const auto runner = m_engine->bottles().runners().find(copy.name);
        if (!runner) {
            end(copy.id, Answer::failure(Fault::Failed, "The runner has gone."));
            return;
        }
        job = std::make_unique<ChangeRunnerJob>(m_engine->jobBottle(copy.bottle), *runner, done);
    } else {
        const QString version = copy.name == None ? QString() : copy.name;
        job = std::make_unique<ChangeGraphicsJob>(m_engine->jobBottle(copy.bottle),
                                                  copy.kind == "dxvk" ? "DXVK" : "VKD3D", version,
                                                  m_components->store().pathOf(copy.kind, version), done);
    }
    change->job = job.get();
    connect(job.get(), &InstallJob::started, this,
            [this, copy] { Q_EMIT setupStarted(copy.bottle, copy.kind, copy.name); });
    m_engine->enqueue(copy.bottle, std::move(job));
}

BottleComponentRequests::Change* BottleComponentRequests::find(int id) {
    for (Change& change : m_changes) {
        if (change.id == id)
            return &change;
    }
    return nullptr;
}

BottleComponentRequests::Change* BottleComponentRequests::lastChange(const QString& bottle,
                                                                     const QString& kind) {
    for (int i = m_changes.size() - 1; i >= 0; --i) {
        if (m_changes[i].bottle == bottle && m_changes[i].kind == kind)
            return &m_changes[i];
    }
    return nullptr;
}

void BottleComponentRequests::end(int id, const Answer& result) {
    const Change* found = find(id);
    if (!found)
        return;
    const Change change = *found;
    m_changes.remove(int(found - m_changes.constData()));
    if (!result.isGood())
        qWarning() << change.kind << BottleName::shown(change.name) << "did not come into"
                   << BottleName::shown(change.bottle) << result.reason.text();
    const Change* present = lastChange(change.bottle, change.kind);
    if (!change.isCancelled || !present || present->name != change.name)
        Q_EMIT setupDone(change.bottle, change.kind, change.name, result);
}

void BottleComponentRequests::installing(const QString& bottle, const QString& kind, const Reply& reply) {
    QJsonObject result;
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    for (const Change& change : m_changes) {
        if (change.bottle == bottle && change.kind == kind && !change.isCancelled)
            result.insert(change.name, change.state == Change::SettingUp ? "SETUPING" : "DOWNLOADING");
    }
    reply(Answer::of(compact(result)));
}

void BottleComponentRequests::cancel(const QString& bottle, const QString& kind, const QString& name,
                                     const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.bottle == bottle && change.kind == kind && change.name == name)
            cancelChange(change.id, Reason::Cancelled);
    }
    reply(Answer::of());
}

void BottleComponentRequests::cancelAll(const QString& bottle) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.bottle == bottle)
            cancelChange(change.id, "The bottle is being deleted.");
    }
}

void BottleComponentRequests::cancelBefore(const Change& last) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.id < last.id && change.bottle == last.bottle && change.kind == last.kind)
            cancelChange(change.id, Reason::OtherChoice);
    }
}

void BottleComponentRequests::cancelChange(int id, const Reason& why) {
    Change* change = find(id);
    if (!change || change->isCancelled)
        return;
    const Change copy = *change;
    change->isCancelled = true;
    if (copy.job) {
        copy.job->cancel();  // end() follows when it has been rolled back
        return;
    }
    const Answer failure = Answer::failure(Fault::Failed, why);
    end(id, failure);
    if (copy.state == Change::Checking)
        copy.reply(failure);
    else
        m_components->release(copy.kind, copy.name);
}
