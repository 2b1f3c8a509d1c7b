#include "bottleservice/requests/OfflineExport.h"

#include <QDebug>
#include <QLocale>
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
        const Reason refusal = refusalOf(recipe, component);
        if (refusal.isEmpty() && !isCancelled()) {
            fetch(*recipe);
            return;
        }
        fail(component, refusal);
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
    m_files = wanted.size();
    m_file = m_percent = 0;
    m_fetch = new FileFetch(m_downloads, wanted, this);
    connect(m_fetch, &FileFetch::fileStarted, this, [this] { ++m_file; });
    connect(m_fetch, &FileFetch::progress, this,
            [this, name = recipe.name](qint64 received, qint64 total) { onProgress(name, received, total); });
    connect(m_fetch, &FileFetch::finished, this,
            [this, recipe](const Reason& reason) { onFetched(recipe, reason); });
    m_fetch->start();
}

/// Each file counts the same, since not all sizes are known. Never goes back.
void OfflineExport::onProgress(const QString& component, qint64 received, qint64 total) {
    if (total <= 0 && m_files == 1) {
        setDownloading(component, QLocale().formattedDataSize(received));
        return;
    }
    const int ofFile = total > 0 ? int(qMin(received, total) * 100 / total) : 0;
    m_percent = qMax(m_percent, ((m_file - 1) * 100 + ofFile) / m_files);
    setDownloading(component, QString("%1%").arg(m_percent));
}

void OfflineExport::onFetched(const Recipe& recipe, const Reason& reason) {
    std::exchange(m_fetch, nullptr)->deleteLater();
    if (reason.isEmpty()) {
        setRunning(recipe.name);
        m_list.components.insert(recipe.name, recipe.files());
        for (const QString& file : recipe.files())
            m_list.files.insert(file, {});
    } else {
        fail(recipe.name, reason);
    }
    next();
}

void OfflineExport::fail(const QString& component, const Reason& reason) {
    setFailed(component, isCancelled() ? Reason(Reason::ExportCancelled) : reason);
}

void OfflineExport::write() {
    Background::run(
        this,
        [asked = m_asked, list = m_list, directory = m_downloads->directory(),
         cancelled = cancelled()]() mutable {
            Failures failures = OfflineArchive::measure(&list, directory, *cancelled);
            Reason reason;
            if (!list.components.isEmpty())
                reason = OfflineArchive::write(asked.target, list, directory, asked.record, *cancelled);
            for (const QString& component : reason.isEmpty() ? QStringList() : list.components.keys())
                failures.insert(component, reason);
            return failures;
        },
        [this](const Failures& failures) { onWritten(failures); });
}

void OfflineExport::onWritten(const Failures& failures) {
    QStringList written = m_list.components.keys();
    for (auto it = failures.begin(); it != failures.end(); ++it) {
        fail(it.key(), *it);
        written.removeAll(it.key());
    }
    for (const QString& component : qAsConst(written))
        setResult(component, Answer::of());
    if (!written.isEmpty())
        qInfo() << "exported" << written << "to" << m_asked.target;
    finish();
}
