#include "bottleservice/DependencyRequests.h"

#include <QDebug>
#include <QJsonArray>
#include <QStandardPaths>

#include "bottleservice/BottleEngine.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/jobs/InstallDependencyJob.h"

namespace {

const char Cancelled[] = "The installation was cancelled.";

}  // namespace

DependencyRequests::DependencyRequests(BottleEngine* engine, Downloads* downloads,
                                       const QString& catalogueDir, QObject* parent)
    : QObject(parent), m_engine(engine), m_downloads(downloads), m_catalogueDir(catalogueDir) {}

void DependencyRequests::install(const QString& bottle, const QString& dependency, const Reply& reply) {
    if (!Sources::isPlainName(dependency)) {
        reply(
            Answer::failure(Answer::Fault::InvalidArgs,
                            QString("\"%1\" is no name of a component.").arg(BottleName::shown(dependency))));
        return;
    }
    if (m_engine->refuseUnknown(bottle, reply)) {
        Q_EMIT done(bottle, dependency, "There is no such bottle.");
        return;
    }
    reply(Answer::of());
    QQueue<Install>& line = m_lines[bottle];
    line.enqueue({dependency, {}, {}, false});
    if (line.size() == 1)
        startFirst(bottle);
}

void DependencyRequests::startFirst(const QString& bottle) {
    QString error;
    if (m_lines[bottle].head().cancelled) {
        firstEnded(bottle, Cancelled);
        return;
    }
    const QVector<Recipe> recipes = planned(bottle, m_lines[bottle].head().dependency, &error);
    if (error.isEmpty())
        fetch(bottle, recipes);
    else
        firstEnded(bottle, error);
}

QVector<Recipe> DependencyRequests::planned(const QString& bottle, const QString& dependency,
                                            QString* error) const {
    Answer failure;
    const auto settings = m_engine->loaded(bottle, &failure);
    *error = failure.sentence;
    if (!settings)
        return {};
    QStringList installed;
    for (const QJsonValue& name : settings->record()["Installed_Dependencies"].toArray())
        installed += name.toString();
    InstallPlan::Asked asked{
        dependency, installed, !QStandardPaths::findExecutable("winetricks").isEmpty(), {}};
    const Runner runner = m_engine->runnerOf(*settings);
    if (!runner.wine.isEmpty())
        asked.target = RecipeTarget::of(m_engine->store().pathOf(bottle), runner.wine);
    const InstallPlan plan = InstallPlan::make(asked, Recipes(m_catalogueDir, m_engine->dataDir()),
                                               Sources(m_catalogueDir, m_engine->dataDir()));
    *error = plan.refusal;
    return plan.recipes;
}

void DependencyRequests::fetch(const QString& bottle, const QVector<Recipe>& recipes) {
    const Sources sources(m_catalogueDir, m_engine->dataDir());
    const QString dependency = m_lines[bottle].head().dependency;
    QStringList files;
    for (const Recipe& recipe : recipes)
        files += recipe.files();
    files.removeDuplicates();
    QVector<Source> wanted;
    for (const QString& file : qAsConst(files))
        wanted += sources.find(file);
    auto* fetch = new FileFetch(m_downloads, wanted, this);
    m_lines[bottle].head().fetch = fetch;
    connect(fetch, &FileFetch::fileStarted, this, [this, bottle, dependency](const QString& file) {
        Q_EMIT described(bottle, dependency, QString("Downloading %1").arg(file));
    });
    connect(fetch, &FileFetch::progress, this, [this, bottle, dependency](qint64 received, qint64 total) {
        Q_EMIT progress(bottle, dependency, received, total);
    });
    connect(fetch, &FileFetch::finished, this, [this, fetch, bottle, recipes](const QString& sentence) {
        fetch->deleteLater();
        if (sentence.isEmpty())
            enqueue(bottle, recipes);
        else
            firstEnded(bottle, sentence);
    });
    fetch->start();
}

void DependencyRequests::enqueue(const QString& bottle, const QVector<Recipe>& recipes) {
    const QString dependency = m_lines[bottle].head().dependency;
    auto job = std::make_unique<InstallDependencyJob>(
        m_engine, bottle, recipes, m_downloads,
        [self = QPointer<DependencyRequests>(this), bottle](const Answer& answer) {
            if (self)
                self->firstEnded(bottle, answer.sentence);
        });
    connect(job.get(), &InstallDependencyJob::described, this,
            [this, bottle, dependency](const QString& text) { Q_EMIT described(bottle, dependency, text); });
    connect(job.get(), &InstallDependencyJob::stepDone, this,
            [this, bottle, dependency](int count, int total) {
                Q_EMIT stepDone(bottle, dependency, count, total);
            });
    m_lines[bottle].head().job = job.get();
    m_engine->enqueue(bottle, std::move(job));
}

void DependencyRequests::firstEnded(const QString& bottle, const QString& sentence) {
    const auto line = m_lines.find(bottle);
    const QString dependency = line->dequeue().dependency;
    const bool isLast = line->isEmpty();
    if (isLast)
        m_lines.erase(line);
    if (!sentence.isEmpty())
        qWarning() << BottleName::shown(dependency) << "did not come into" << BottleName::shown(bottle)
                   << sentence;
    // The next one begins when whoever hears of this one's end is done.
    if (!isLast)
        QMetaObject::invokeMethod(
            this, [this, bottle] { startFirst(bottle); }, Qt::QueuedConnection);
    Q_EMIT done(bottle, dependency, sentence);
}

void DependencyRequests::installing(const QString& bottle, const Reply& reply) {
    const auto line = m_lines.constFind(bottle);
    if (!m_engine->refuseUnknown(bottle, reply))
        reply(Answer::of(line == m_lines.constEnd() ? QString() : line->head().dependency));
}

void DependencyRequests::cancel(const QString& bottle, const Reply& reply) {
    if (m_engine->refuseUnknown(bottle, reply))
        return;
    const auto line = m_lines.find(bottle);
    if (line != m_lines.end()) {
        while (line->size() > 1) {
            const QString waiting = line->takeLast().dependency;
            Q_EMIT done(bottle, waiting, Cancelled);
        }
        line->head().cancelled = true;
        const Install first = line->head();
        if (first.job)
            first.job->cancel();
        else if (first.fetch)
            first.fetch->cancel();
    }
    reply(Answer::of());
}

void DependencyRequests::close() {
    for (const QString& bottle : m_lines.keys())
        cancel(bottle, [](const Answer&) {});
}
