#include "bottleservice/requests/OfflineExport.h"

#include <QDebug>
#include <utility>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/FileFetch.h"
#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/files/Background.h"

OfflineExport::OfflineExport(const Asked& asked, Downloads* downloads, const Recipes& recipes,
                             const Sources& sources, QObject* parent)
    : OfflineTransfer(parent),
      m_asked(asked),
      m_downloads(downloads),
      m_recipes(recipes),
      m_sources(sources),
      m_waiting(asked.components) {}

void OfflineExport::start() {
    for (const QString& component : qAsConst(m_waiting))
        setRunning(component);
    next();
}

void OfflineExport::cancel() {
    OfflineTransfer::cancel();
    if (m_fetch)
        m_fetch->cancel();
}

void OfflineExport::next() {
    while (!m_waiting.isEmpty()) {
        const QString component = m_waiting.takeFirst();
        const auto recipe = m_recipes.find(component);
        const Reason refusal = isCancelled() ? Reason(Reason::Cancelled) : refusalOf(recipe, component);
        if (refusal.isEmpty()) {
            fetch(*recipe);
            return;
        }
        setFailed(component, refusal);
    }
    if (m_list.components.isEmpty())
        finish();
    else
        write();
}

Reason OfflineExport::refusalOf(const std::optional<Recipe>& recipe, const QString& component) const {
    const QString shown = BottleName::shown(component);
    if (!recipe)
        return Reason(Reason::NoComponent, {shown});
    if (recipe->steps.isEmpty())
        return Reason(Reason::NoKnownFile, {shown});
    for (const QString& file : recipe->files()) {
        const Reason refusal = m_sources.refusal(m_sources.find(file));
        if (!refusal.isEmpty())
            return refusal;
    }
    return {};
}

void OfflineExport::fetch(const Recipe& recipe) {
    QVector<Source> wanted;
    for (const QString& file : recipe.files())
        wanted += m_sources.find(file);
    m_fetch = new FileFetch(m_downloads, wanted, this);
    connect(m_fetch, &FileFetch::progress, this, [this, name = recipe.name](qint64 received, qint64 total) {
        setDownloading(name, received, total);
    });
    connect(m_fetch, &FileFetch::finished, this, [this, recipe](const Reason& reason) {
        std::exchange(m_fetch, nullptr)->deleteLater();
        if (reason.isEmpty()) {
            setRunning(recipe.name);
            m_list.components.insert(recipe.name, recipe.files());
            for (const QString& file : recipe.files())
                m_list.files.insert(file, {});
        } else {
            setFailed(recipe.name, reason);
        }
        next();
    });
    m_fetch->start();
}

void OfflineExport::write() {
    Background::run(
        this,
        [asked = m_asked, list = m_list, directory = m_downloads->directory(), cancelled = cancelled()] {
            return OfflineArchive::write(asked.target, list, directory, asked.record, *cancelled);
        },
        [this](const Reason& reason) { onWritten(reason); });
}

void OfflineExport::onWritten(const Reason& reason) {
    if (reason.isEmpty())
        qInfo() << "exported" << m_list.components.keys() << "to" << m_asked.target;
    for (const QString& component : m_list.components.keys()) {
        if (reason.isEmpty())
            setResult(component, Answer::of());
        else
            setFailed(component, reason);
    }
    finish();
}
