#include "bottleservice/requests/ComponentRequests.h"

#include <QDebug>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/ComponentInstall.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/jobs/ChangeGraphicsJob.h"
#include "bottleservice/jobs/ChangeRunnerJob.h"
#include "bottleservice/requests/BottleEngine.h"

using Fault = Answer::Fault;
using JsonText::compact;

namespace {

const QLatin1String None("-");

QString keyOf(const QString& kind, const QString& name) {
    return kind + '/' + name;
}

}  // namespace

ComponentRequests::ComponentRequests(BottleEngine* engine, Downloads* downloads, const QString& catalogueDir,
                                     QObject* parent)
    : QObject(parent),
      m_engine(engine),
      m_downloads(downloads),
      m_catalogueDir(catalogueDir),
      m_store(engine->dataDir()) {}

Sources ComponentRequests::sources() const {
    return Sources(m_catalogueDir, m_engine->dataDir());
}

Answer ComponentRequests::list() const {
    return Answer::of(compact(m_store.catalogue(sources())));
}

void ComponentRequests::install(const QString& kind, const QString& name, const Reply& reply) {
    if (!ComponentStore::kinds().contains(kind)) {
        reply(Answer::failure(Fault::InvalidArgs,
                              QString("\"%1\" is no kind of component.").arg(BottleName::shown(kind))));
        return;
    }
    if (m_store.isInstalled(kind, name)) {
        Q_EMIT installed(kind, name, {});
        reply(Answer::of(compact(QJsonObject{{"ok", true}})));
        return;
    }
    fetch(kind, name);
    m_installs[keyOf(kind, name)].replies += reply;
}

void ComponentRequests::fetch(const QString& kind, const QString& name) {
    Install& install = m_installs[keyOf(kind, name)];
    if (install.work)
        return;
    install.work =
        new ComponentInstall(m_store, sources(), m_downloads, m_engine->reclaimer(), kind, name, this);
    connect(
        install.work, &ComponentInstall::progress, this,
        [this, kind, name](qint64 received, qint64 total) { Q_EMIT progress(kind, name, received, total); });
    connect(install.work, &ComponentInstall::finished, this,
            [this, kind, name](const Reason& reason) { onFetched(kind, name, reason); });
    install.work->start();
}

void ComponentRequests::onFetched(const QString& kind, const QString& name, const Reason& reason) {
    const Install install = m_installs.take(keyOf(kind, name));
    install.work->deleteLater();
    if (reason.isEmpty())
        Q_EMIT catalogueChanged(list().text);
    answerInstall(install, kind, name, reason);
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

void ComponentRequests::answerInstall(const Install& install, const QString& kind, const QString& name,
                                      const Reason& reason) {
    QJsonObject result{{"ok", reason.isEmpty()}};
    if (!reason.isEmpty()) {
        result.insert("error", reason.text());
        result.insert("reasons", reason.toJson());
    }
    Q_EMIT installed(kind, name, reason);
    for (const Reply& reply : install.replies)
        reply(Answer::of(compact(result)));
}

void ComponentRequests::cancelInstall(const QString& kind, const QString& name, const Reply& reply) {
    const auto install = m_installs.find(keyOf(kind, name));
    if (install != m_installs.end() && install->cancelled < install->replies.size()) {
        ++install->cancelled;
        cancelDownload(kind, name);
    }
    reply(Answer::of());
}

void ComponentRequests::setComponent(const QString& bottle, const QString& kind, const QString& version,
                                     const Reply& reply) {
    if (version != None && !Sources::isPlainName(version)) {
        reply(Answer::failure(Fault::InvalidArgs,
                              QString("\"%1\" is no name of a component.").arg(BottleName::shown(version))));
        return;
    }
    const Answer check = m_engine->checked(bottle);
    if (!check.isGood()) {
        reply(check);
        Q_EMIT setupDone(bottle, kind, version, check);
        return;
    }
    const Change* present = last(bottle, kind);
    if (present && present->name == version && !present->isCancelled) {
        reply(Answer::of());
        return;
    }
    const int id = ++m_lastId;
    m_changes += Change{id, bottle, kind, version, reply, Change::Checking, false, {}};
    m_engine->waitBeforeInstall(bottle, this,
                                [this, id](const QStringList& running) { onLooked(id, running); });
}

void ComponentRequests::onLooked(int id, const QStringList& running) {
    Change* change = find(id);
    if (!change)
        return;
    const Change copy = *change;
    if (!running.isEmpty()) {
        end(id, Answer::busy(running));
        copy.reply(Answer::busy(running));
        return;
    }
    // Only now: a request that is refused takes nothing from those before it.
    cancelBefore(copy);
    change = find(id);
    copy.reply(Answer::of());
    if (copy.name == None ? copy.kind != "runner" : m_store.isInstalled(copy.kind, copy.name)) {
        setUp(change);
        return;
    }
    change->state = Change::Downloading;
    Q_EMIT waiting(copy.bottle, copy.kind, copy.name);
    fetch(copy.kind, copy.name);
}

void ComponentRequests::setUp(Change* change) {
    change->state = Change::SettingUp;
    const Change copy = *change;
    const Reply done = [self = QPointer<ComponentRequests>(this), copy](const Answer& answer) {
        if (self)
            self->end(copy.id, answer);
    };
    std::unique_ptr<InstallJob> job;
    if (copy.kind == "runner") {
        const auto runner = m_engine->runners().find(copy.name);
        if (!runner) {
            end(copy.id, Answer::failure(Fault::Failed, "The runner has gone."));
            return;
        }
        job = std::make_unique<ChangeRunnerJob>(m_engine, copy.bottle, *runner, done);
    } else {
        const QString version = copy.name == None ? QString() : copy.name;
        job =
            std::make_unique<ChangeGraphicsJob>(m_engine, copy.bottle, copy.kind == "dxvk" ? "DXVK" : "VKD3D",
                                                version, m_store.pathOf(copy.kind, version), done);
    }
    change->job = job.get();
    connect(job.get(), &InstallJob::started, this,
            [this, copy] { Q_EMIT setupStarted(copy.bottle, copy.kind, copy.name); });
    m_engine->enqueue(copy.bottle, std::move(job));
}

ComponentRequests::Change* ComponentRequests::find(int id) {
    for (Change& change : m_changes) {
        if (change.id == id)
            return &change;
    }
    return nullptr;
}

ComponentRequests::Change* ComponentRequests::last(const QString& bottle, const QString& kind) {
    for (int i = m_changes.size() - 1; i >= 0; --i) {
        if (m_changes[i].bottle == bottle && m_changes[i].kind == kind)
            return &m_changes[i];
    }
    return nullptr;
}

void ComponentRequests::end(int id, const Answer& result) {
    const Change* found = find(id);
    if (!found)
        return;
    const Change change = *found;
    m_changes.remove(int(found - m_changes.constData()));
    if (!result.isGood())
        qWarning() << change.kind << BottleName::shown(change.name) << "did not come into"
                   << BottleName::shown(change.bottle) << result.reason.text();
    const Change* present = last(change.bottle, change.kind);
    if (!change.isCancelled || !present || present->name != change.name)
        Q_EMIT setupDone(change.bottle, change.kind, change.name, result);
}

void ComponentRequests::installing(const QString& bottle, const QString& kind, const Reply& reply) {
    QJsonObject result;
    if (m_engine->refuseUnknown(bottle, reply))
        return;
    for (const Change& change : m_changes) {
        if (change.bottle == bottle && change.kind == kind && !change.isCancelled)
            result.insert(change.name, change.state == Change::SettingUp ? "SETUPING" : "DOWNLOADING");
    }
    reply(Answer::of(compact(result)));
}

void ComponentRequests::cancel(const QString& bottle, const QString& kind, const QString& name,
                               const Reply& reply) {
    if (m_engine->refuseUnknown(bottle, reply))
        return;
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.bottle == bottle && change.kind == kind && change.name == name)
            cancelChange(change.id, Reason::Cancelled);
    }
    reply(Answer::of());
}

void ComponentRequests::cancelAll(const QString& bottle) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.bottle == bottle)
            cancelChange(change.id, "The bottle is being deleted.");
    }
}

void ComponentRequests::cancelBefore(const Change& last) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.id < last.id && change.bottle == last.bottle && change.kind == last.kind)
            cancelChange(change.id, Reason::OtherChoice);
    }
}

void ComponentRequests::cancelChange(int id, const Reason& why) {
    Change* change = find(id);
    if (!change || change->isCancelled)
        return;
    const Change copy = *change;
    change->isCancelled = true;
    if (copy.job) {
        copy.job->cancel();  // its end tells the rest
        return;
    }
    const Answer failure = Answer::failure(Fault::Failed, why);
    end(id, failure);
    if (copy.state == Change::Checking)
        copy.reply(failure);
    else
        cancelDownload(copy.kind, copy.name);
}

/// Ends a download that nobody waits for any more.
void ComponentRequests::cancelDownload(const QString& kind, const QString& name) {
    const auto install = m_installs.constFind(keyOf(kind, name));
    if (install == m_installs.constEnd() || install->cancelled < install->replies.size())
        return;
    for (const Change& change : qAsConst(m_changes)) {
        if (change.kind == kind && change.name == name && change.state == Change::Downloading)
            return;
    }
    // Its end is awaited by nobody; who asks again begins anew.
    const Install ended = m_installs.take(keyOf(kind, name));
    ended.work->disconnect(this);
    connect(ended.work, &ComponentInstall::finished, ended.work, &QObject::deleteLater);
    ended.work->cancel();
    if (!ended.replies.isEmpty())
        answerInstall(ended, kind, name, Reason::Cancelled);
}

void ComponentRequests::close() {
    const QHash<QString, Install> installs = m_installs;  // an end takes its own out
    for (const Install& install : installs)
        install.work->cancel();
}
