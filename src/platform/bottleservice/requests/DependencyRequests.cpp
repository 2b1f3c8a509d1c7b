#include "bottleservice/requests/DependencyRequests.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonArray>
#include <QStandardPaths>
#include <algorithm>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/FileFetch.h"
#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/jobs/InstallDependencyJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"

namespace {

Answer failed(const Reason& reason) {
    return Answer::failure(Answer::Fault::Failed, reason);
}

Answer cancelled() {
    return failed(Reason::Cancelled);
}

}  // namespace

DependencyRequests::DependencyRequests(BottleEngine* engine, Downloads* downloads,
                                       const QString& catalogueDir, QObject* parent)
    : QObject(parent), m_engine(engine), m_downloads(downloads), m_catalogueDir(catalogueDir) {}

Sources DependencyRequests::sources() const {
    return Sources(m_catalogueDir, m_engine->dataDir());
}

Recipes DependencyRequests::recipes() const {
    return Recipes(m_catalogueDir, m_engine->dataDir());
}

void DependencyRequests::install(const QString& bottle, const QString& dependency, const Reply& reply) {
    add(bottle, {dependency, {}, {}, false, false}, reply);
}

void DependencyRequests::installFromStore(const QString& bottle, const QString& dependency,
                                          const Reply& reply) {
    add(bottle, {dependency, {}, {}, false, true}, reply);
}

void DependencyRequests::add(const QString& bottle, const Install& install, const Reply& reply) {
    const QString& dependency = install.dependency;
    if (!Sources::isPlainName(dependency)) {
        reply(
            Answer::failure(Answer::Fault::InvalidArgs,
                            QString("\"%1\" is no name of a component.").arg(BottleName::shown(dependency))));
        return;
    }
    const Answer check = m_engine->bottles().check(bottle);
    if (!check.isGood()) {
        reply(check);
        Q_EMIT done(bottle, dependency, check);
        return;
    }
    QQueue<Install>& line = m_lines[bottle];
    line.enqueue(install);
    if (line.size() == 1)
        startFirst(bottle, reply);
    else
        reply(Answer::of());
}

void DependencyRequests::startFirst(const QString& bottle, const Reply& reply) {
    m_engine->waitBeforeInstall(bottle, this, [this, bottle, reply](const QStringList& running) {
        if (running.isEmpty() || m_lines[bottle].head().cancelled) {
            reply(Answer::of());
            planFirst(bottle);
        } else {
            firstEnded(bottle, Answer::busy(running));
            reply(Answer::busy(running));
        }
    });
}

void DependencyRequests::planFirst(const QString& bottle) {
    if (m_lines[bottle].head().cancelled) {
        firstEnded(bottle, cancelled());
        return;
    }
    const Install first = m_lines[bottle].head();
    const InstallPlan plan = planOf(bottle, first.dependency, first.fromStore);
    if (plan.refusal.isEmpty())
        fetch(bottle, plan.recipes);
    else
        firstEnded(bottle, failed(plan.refusal));
}

InstallPlan DependencyRequests::planOf(const QString& bottle, const QString& dependency,
                                       bool fromStore) const {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return {{}, failure.reason};
    QStringList installed;
    for (const QJsonValue& name : settings->record()["Installed_Dependencies"].toArray())
        installed += name.toString();
    // Winetricks fetches what it installs.
    const bool hasWinetricks = !fromStore && !QStandardPaths::findExecutable("winetricks").isEmpty();
    InstallPlan::Asked asked{dependency, installed, hasWinetricks, {}};
    const Runner runner = m_engine->bottles().runnerOf(*settings);
    if (!runner.wine.isEmpty())
        asked.target = RecipeTarget::of(m_engine->bottles().pathOf(bottle), runner.wine);
    return InstallPlan::make(asked, recipes(), sources());
}

void DependencyRequests::fetch(const QString& bottle, const QVector<Recipe>& recipes) {
    const Sources from = sources();
    const QString dependency = m_lines[bottle].head().dependency;
    QStringList files;
    for (const Recipe& recipe : recipes)
        files += recipe.files();
    files.removeDuplicates();
    QVector<Source> wanted;
    for (const QString& file : qAsConst(files))
        wanted += from.find(file);
    if (m_lines[bottle].head().fromStore) {
        for (Source& source : wanted) {
            source.addresses.clear();  // what is there is only checked
            if (!QFileInfo(m_downloads->pathOf(source.file)).isFile()) {
                firstEnded(bottle, failed(Reason(Reason::NotOnMachine, {source.file})));
                return;
            }
        }
    }
    auto* fetch = new FileFetch(m_downloads, wanted, this);
    m_lines[bottle].head().fetch = fetch;
    connect(fetch, &FileFetch::fileStarted, this, [this, bottle, dependency](const QString& file) {
        Q_EMIT described(bottle, dependency, QString("Downloading %1").arg(file));
    });
    connect(fetch, &FileFetch::progress, this, [this, bottle, dependency](qint64 received, qint64 total) {
        Q_EMIT progress(bottle, dependency, received, total);
    });
    connect(fetch, &FileFetch::finished, this, [this, fetch, bottle, recipes](const Reason& reason) {
        fetch->deleteLater();
        if (reason.isEmpty())
            enqueue(bottle, recipes);
        else
            firstEnded(bottle, failed(reason));
    });
    fetch->start();
}

void DependencyRequests::enqueue(const QString& bottle, const QVector<Recipe>& recipes) {
    const QString dependency = m_lines[bottle].head().dependency;
    auto job = std::make_unique<InstallDependencyJob>(
        m_engine->jobBottle(bottle), recipes, m_downloads,
        [self = QPointer<DependencyRequests>(this), bottle](const Answer& answer) {
            if (self)
                self->firstEnded(bottle, answer);
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

void DependencyRequests::firstEnded(const QString& bottle, const Answer& result) {
    const auto line = m_lines.find(bottle);
    const Install first = line->dequeue();
    const auto isSame = [&first](const Install& other) { return other.dependency == first.dependency; };
    const bool isRepeated = first.cancelled && std::any_of(line->cbegin(), line->cend(), isSame);
    const bool isLast = line->isEmpty();
    if (isLast)
        m_lines.erase(line);
    if (!result.isGood())
        qWarning() << BottleName::shown(first.dependency) << "did not come into" << BottleName::shown(bottle)
                   << result.reason.text();
    // Queued: the receivers of done() come first.
    if (!isLast)
        QMetaObject::invokeMethod(
            this, [this, bottle] { startFirst(bottle, [](const Answer&) {}); }, Qt::QueuedConnection);
    if (!isRepeated)
        Q_EMIT done(bottle, first.dependency, result);
}

void DependencyRequests::installing(const QString& bottle, const Reply& reply) {
    const auto line = m_lines.constFind(bottle);
    if (!RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        reply(Answer::of(line == m_lines.constEnd() ? QString() : line->head().dependency));
}

void DependencyRequests::cancel(const QString& bottle, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    const auto line = m_lines.find(bottle);
    if (line != m_lines.end()) {
        while (line->size() > 1) {
            const QString waiting = line->takeLast().dependency;
            Q_EMIT done(bottle, waiting, cancelled());
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
