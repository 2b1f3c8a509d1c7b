#include "bottleservice/jobs/SetupDependency.h"

#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/FileFetch.h"
#include "bottleservice/components/RecipeRunner.h"

namespace {

QVector<Source> sourcesOf(const QVector<Recipe>& recipes, const Sources& sources) {
    QVector<Source> wanted;
    for (const QString& file : Recipe::filesOf(recipes))
        wanted += sources.find(file);
    return wanted;
}

}  // namespace

SetupDependency::SetupDependency(const Runner& runner, const QString& bottlePath,
                                 const QVector<Recipe>& recipes, const Sources& sources, Downloads* downloads,
                                 QObject* parent)
    : QObject(parent),
      m_recipes(recipes),
      m_fetch(new FileFetch(downloads, sourcesOf(recipes, sources), this)),
      m_steps(new RecipeRunner(
          runner, bottlePath, bottlePath, recipes,
          [downloads](const QString& file) { return downloads->pathOf(file); }, this)) {
    connect(m_fetch, &FileFetch::fileStarted, this, [this](const QString& file) {
        m_file = file;
        Q_EMIT described(QString("Downloading %1").arg(file));
    });
    connect(m_fetch, &FileFetch::progress, this,
            [this](qint64 received, qint64 total) { Q_EMIT progress(m_file, received, total); });
    connect(m_fetch, &FileFetch::finished, this, &SetupDependency::onFetched);
    connect(m_steps, &RecipeRunner::described, this, &SetupDependency::described);
    connect(m_steps, &RecipeRunner::finished, this, &SetupDependency::finished);
}

void SetupDependency::start() {
    m_fetch->start();
}

void SetupDependency::cancel() {
    if (m_isFetched)
        m_steps->cancel();
    else
        m_fetch->cancel();
}

QJsonObject SetupDependency::overrides() const {
    return m_steps->overrides();
}

void SetupDependency::onFetched(const Reason& reason) {
    m_isFetched = true;
    if (reason.isEmpty())
        m_steps->start();
    else
        Q_EMIT finished(reason);
}
