#include "bottleservice/requests/ComponentRequests.h"

#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/ComponentInstall.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/requests/BottleEngine.h"

using Fault = Answer::Fault;
using JsonText::compact;

namespace {

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

void ComponentRequests::obtain(const QString& kind, const QString& name) {
    fetch(kind, name);
    ++m_installs[keyOf(kind, name)].bottles;
}

void ComponentRequests::release(const QString& kind, const QString& name) {
    const auto install = m_installs.find(keyOf(kind, name));
    if (install == m_installs.end())
        return;
    --install->bottles;
    cancelUnwanted(kind, name);
}

void ComponentRequests::onFetched(const QString& kind, const QString& name, const Reason& reason) {
    const Install install = m_installs.take(keyOf(kind, name));
    install.work->deleteLater();
    if (reason.isEmpty())
        Q_EMIT catalogueChanged(list().text);
    answerInstall(install, kind, name, reason);
    Q_EMIT fetched(kind, name, reason);
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
        cancelUnwanted(kind, name);
    }
    reply(Answer::of());
}

/// Ends a download that nobody wants any more.
void ComponentRequests::cancelUnwanted(const QString& kind, const QString& name) {
    const auto install = m_installs.constFind(keyOf(kind, name));
    if (install == m_installs.constEnd() || install->cancelled < install->replies.size() ||
        install->bottles > 0)
        return;
    // Forgotten at once: whoever asks again starts a new download.
    const Install ended = m_installs.take(keyOf(kind, name));
    ended.work->disconnect(this);
    connect(ended.work, &ComponentInstall::finished, ended.work, &QObject::deleteLater);
    ended.work->cancel();
    if (!ended.replies.isEmpty())
        answerInstall(ended, kind, name, Reason::Cancelled);
}

void ComponentRequests::close() {
    const QHash<QString, Install> installs = m_installs;  // the end of each removes it from the member
    for (const Install& install : installs)
        install.work->cancel();
}
