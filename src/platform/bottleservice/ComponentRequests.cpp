#include "bottleservice/ComponentRequests.h"

#include <QDebug>
#include <QJsonObject>

#include "bottleservice/BottleEngine.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/ComponentInstall.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/jobs/ChangeGraphicsJob.h"
#include "bottleservice/jobs/ChangeRunnerJob.h"

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
            [this, kind, name](const QString& sentence) { onFetched(kind, name, sentence); });
    install.work->start();
}

void ComponentRequests::onFetched(const QString& kind, const QString& name, const QString& sentence) {
    const Install install = m_installs.take(keyOf(kind, name));
    install.work->deleteLater();
    QJsonObject result{{"ok", sentence.isEmpty()}};
    if (!sentence.isEmpty())
        result.insert("error", sentence);
    if (sentence.isEmpty())
        Q_EMIT catalogueChanged(list().text);
    Q_EMIT installed(kind, name, sentence);
    for (const Reply& reply : install.replies)
        reply(Answer::of(compact(result)));
    QStringList bottles;
    for (const Change& change : qAsConst(m_changes)) {
        if (change.kind == kind && change.name == name && change.waits)
            bottles += change.bottle;
    }
    for (const QString& bottle : qAsConst(bottles)) {
        if (!sentence.isEmpty())
            drop(bottle, kind, name, sentence);
        else if (Change* change = find(bottle, kind, name))
            setUp(change);
    }
}

void ComponentRequests::setComponent(const QString& bottle, const QString& kind, const QString& version,
                                     const Reply& reply) {
    if (version != None && !Sources::isPlainName(version)) {
        reply(Answer::failure(Fault::InvalidArgs,
                              QString("\"%1\" is no name of a component.").arg(BottleName::shown(version))));
        return;
    }
    if (m_engine->refuseUnknown(bottle, reply)) {
        Q_EMIT setupDone(bottle, kind, version, "There is no such bottle.");
        return;
    }
    if (find(bottle, kind, version)) {
        reply(Answer::of());
        return;
    }
    forgetOthers(bottle, kind);
    const bool isThere = version == None ? kind != "runner" : m_store.isInstalled(kind, version);
    m_changes += Change{bottle, kind, version, !isThere, {}};
    reply(Answer::of());
    if (isThere) {
        setUp(&m_changes.last());
        return;
    }
    Q_EMIT waiting(bottle, kind, version);
    fetch(kind, version);
}

void ComponentRequests::setUp(Change* change) {
    change->waits = false;
    const Change copy = *change;
    const Reply done = [self = QPointer<ComponentRequests>(this), copy](const Answer& answer) {
        if (self)
            self->drop(copy.bottle, copy.kind, copy.name, answer.sentence);
    };
    std::unique_ptr<InstallJob> job;
    if (copy.kind == "runner") {
        const auto runner = m_engine->runners().find(copy.name);
        if (!runner) {
            drop(copy.bottle, copy.kind, copy.name, "The runner has gone.");
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

ComponentRequests::Change* ComponentRequests::find(const QString& bottle, const QString& kind,
                                                   const QString& name) {
    for (Change& change : m_changes) {
        if (change.bottle == bottle && change.kind == kind && change.name == name)
            return &change;
    }
    return nullptr;
}

void ComponentRequests::drop(const QString& bottle, const QString& kind, const QString& name,
                             const QString& sentence) {
    Change* change = find(bottle, kind, name);
    if (!change)
        return;
    m_changes.remove(int(change - m_changes.data()));
    if (!sentence.isEmpty())
        qWarning() << kind << BottleName::shown(name) << "did not come into" << BottleName::shown(bottle)
                   << sentence;
    Q_EMIT setupDone(bottle, kind, name, sentence);
}

void ComponentRequests::installing(const QString& bottle, const QString& kind, const Reply& reply) {
    QJsonObject result;
    if (m_engine->refuseUnknown(bottle, reply))
        return;
    for (const Change& change : m_changes) {
        if (change.bottle == bottle && change.kind == kind)
            result.insert(change.name, change.waits ? "DOWNLOADING" : "SETUPING");
    }
    reply(Answer::of(compact(result)));
}

void ComponentRequests::cancel(const QString& bottle, const QString& kind, const QString& name,
                               const Reply& reply) {
    if (m_engine->refuseUnknown(bottle, reply))
        return;
    Change* change = find(bottle, kind, name);
    if (!change) {
        reply(Answer::of());
        return;
    }
    if (change->job) {
        change->job->cancel();  // its end tells the rest
    } else {
        drop(bottle, kind, name, "The installation was cancelled.");
        giveUp(kind, name);
    }
    reply(Answer::of());
}

void ComponentRequests::cancelAll(const QString& bottle) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.bottle == bottle)
            cancel(bottle, change.kind, change.name, [](const Answer&) {});
    }
}

/// Ends a download that nobody waits for any more.
void ComponentRequests::giveUp(const QString& kind, const QString& name) {
    const auto install = m_installs.constFind(keyOf(kind, name));
    if (install == m_installs.constEnd() || !install->replies.isEmpty())
        return;
    for (const Change& change : qAsConst(m_changes)) {
        if (change.kind == kind && change.name == name)
            return;
    }
    // Its end is awaited by nobody; who asks again begins anew.
    ComponentInstall* work = install->work;
    m_installs.remove(keyOf(kind, name));
    work->disconnect(this);
    connect(work, &ComponentInstall::finished, work, &QObject::deleteLater);
    work->cancel();
}

/// The last wish for a bottle counts: those of its kind that still wait for their download are dropped.
void ComponentRequests::forgetOthers(const QString& bottle, const QString& kind) {
    const QVector<Change> changes = m_changes;
    for (const Change& change : changes) {
        if (change.bottle != bottle || change.kind != kind || !change.waits)
            continue;
        drop(bottle, kind, change.name, "Another choice was made.");
        giveUp(kind, change.name);
    }
}

void ComponentRequests::close() {
    for (const Install& install : qAsConst(m_installs))
        install.work->cancel();
}
