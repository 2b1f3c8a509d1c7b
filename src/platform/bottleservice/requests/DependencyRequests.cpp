#include "bottleservice/requests/DependencyRequests.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QStandardPaths>
#include <algorithm>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/FileFetch.h"
#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/SourceFile.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/files/Background.h"
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

void tellEnd(const Reply& ended, const Answer& result) {
    if (ended)
        ended(result);
}

/// Why a file cannot be used as it lies in the directory; empty when all can.
Reason checkFiles(const QVector<Source>& wanted, const QString& directory,
                  const std::atomic_bool& cancelled) {
    for (const Source& source : wanted) {
        const QString path = directory + '/' + source.file;
        if (!QFile::exists(path))
            return Reason(Reason::NotOnMachine, {source.file});
        const Reason reason = SourceFile::check(path, source, directory, cancelled);
        if (!reason.isEmpty())
            return reason;
    }
    return {};
}

/// As done() tells them.
QString namesOf(const QVector<Recipe>& recipes) {
    QJsonArray names;
    for (const Recipe& recipe : recipes)
        names += recipe.name;
    return names.size() > 1 ? JsonText::compact(names) : QString();
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
    Install install;
    install.dependency = dependency;
    add(bottle, install, reply);
}

int DependencyRequests::installFromStore(const QString& bottle, const QString& dependency,
                                         const Reply& ended) {
    Install install;
    install.dependency = dependency;
    install.fromStore = true;
    install.ended = ended;
    install.number = ++m_lastNumber;
    add(bottle, install, [](const Answer&) {});
    return install.number;
}

void DependencyRequests::add(const QString& bottle, const Install& install, const Reply& reply) {
    const QString& dependency = install.dependency;
    if (!Sources::isPlainName(dependency)) {
        const Answer refusal =
            Answer::failure(Answer::Fault::InvalidArgs,
                            QString("\"%1\" is no name of a component.").arg(BottleName::shown(dependency)));
        tellEnd(install.ended, refusal);
        reply(refusal);
        return;
    }
    const Answer check = m_engine->bottles().check(bottle);
    if (!check.isGood()) {
        reply(check);
        tellEnd(install.ended, check);
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
        if (running.isEmpty() || *m_lines[bottle].head().cancelled) {
            reply(Answer::of());
            planFirst(bottle);
        } else {
            firstEnded(bottle, Answer::busy(running));
            reply(Answer::busy(running));
        }
    });
}

void DependencyRequests::planFirst(const QString& bottle) {
    if (*m_lines[bottle].head().cancelled) {
        firstEnded(bottle, cancelled());
        return;
    }
    const Install first = m_lines[bottle].head();
    const InstallPlan plan = planOf(bottle, first.dependency, first.fromStore);
    if (plan.refusal.isEmpty())
        obtainFiles(bottle, plan.recipes);
    else
        firstEnded(bottle, failed(plan.refusal));
}

QVector<InstallPlan> DependencyRequests::plansOf(const QString& bottle, const QStringList& dependencies,
                                                 bool fromStore) const {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return QVector<InstallPlan>(dependencies.size(), {{}, failure.reason});
    InstallPlan::Asked asked;
    for (const QJsonValue& name : settings->record()["Installed_Dependencies"].toArray())
        asked.installed += name.toString();
    // Winetricks fetches what it installs.
    asked.hasWinetricks = !fromStore && !QStandardPaths::findExecutable("winetricks").isEmpty();
    const Runner runner = m_engine->bottles().runnerOf(*settings);
    if (!runner.wine.isEmpty())
        asked.target = RecipeTarget::of(m_engine->bottles().pathOf(bottle), runner.wine);
    const Recipes known = recipes();
    const Sources files = sources();
    QVector<InstallPlan> plans;
    for (const QString& dependency : dependencies) {
        asked.component = dependency;
        plans += InstallPlan::make(asked, known, files);
    }
    return plans;
}

void DependencyRequests::obtainFiles(const QString& bottle, const QVector<Recipe>& recipes) {
    const Sources from = sources();
    QStringList files;
    for (const Recipe& recipe : recipes)
        files += recipe.files();
    files.removeDuplicates();
    QVector<Source> wanted;
    for (const QString& file : qAsConst(files))
        wanted += from.find(file);
    if (m_lines[bottle].head().fromStore)
        checkStore(bottle, recipes, wanted);
    else
        fetch(bottle, recipes, wanted);
}

void DependencyRequests::checkStore(const QString& bottle, const QVector<Recipe>& recipes,
                                    const QVector<Source>& wanted) {
    Background::run(
        this,
        [wanted, directory = m_downloads->directory(), cancelled = m_lines[bottle].head().cancelled] {
            return checkFiles(wanted, directory, *cancelled);
        },
        [this, bottle, recipes](const Reason& reason) {
            onFilesReady(bottle, recipes,
                         *m_lines[bottle].head().cancelled ? Reason(Reason::Cancelled) : reason);
        });
}

void DependencyRequests::onFilesReady(const QString& bottle, const QVector<Recipe>& recipes,
                                      const Reason& reason) {
    if (reason.isEmpty())
        enqueue(bottle, recipes);
    else
        firstEnded(bottle, failed(reason));
}

void DependencyRequests::fetch(const QString& bottle, const QVector<Recipe>& recipes,
                               const QVector<Source>& wanted) {
    const QString dependency = m_lines[bottle].head().dependency;
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
        onFilesReady(bottle, recipes, reason);
    });
    fetch->start();
}

void DependencyRequests::enqueue(const QString& bottle, const QVector<Recipe>& recipes) {
    const QString dependency = m_lines[bottle].head().dependency;
    auto job = std::make_unique<InstallDependencyJob>(
        m_engine->jobBottle(bottle), recipes, m_downloads,
        [self = QPointer<DependencyRequests>(this), bottle, names = namesOf(recipes)](const Answer& answer) {
            if (self)
                self->firstEnded(bottle, answer.isGood() ? Answer::of(names) : answer);
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
    const bool isRepeated = *first.cancelled && std::any_of(line->cbegin(), line->cend(), isSame);
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
    tellEnd(first.ended, result);
    if (!isRepeated)
        Q_EMIT done(bottle, first.dependency, result);
}

void DependencyRequests::installing(const QString& bottle, const Reply& reply) {
    const auto line = m_lines.constFind(bottle);
    if (!RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        reply(Answer::of(line == m_lines.constEnd() ? QString() : line->head().dependency));
}

void DependencyRequests::queue(const QString& bottle, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    QJsonArray names;
    for (const Install& install : m_lines.value(bottle))
        names += install.dependency;
    reply(Answer::of(JsonText::compact(names)));
}

void DependencyRequests::cancelFirst(const QString& bottle) {
    const auto line = m_lines.find(bottle);
    if (line == m_lines.end())
        return;
    *line->head().cancelled = true;
    const Install first = line->head();
    if (first.job)
        first.job->cancel();
    else if (first.fetch)
        first.fetch->cancel();
}

void DependencyRequests::cancel(const QString& bottle, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    cancelFirst(bottle);
    reply(Answer::of());
}

void DependencyRequests::cancelOne(const QString& bottle, const QString& dependency, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    cancelMeant(bottle, [dependency](const Install& install) { return install.dependency == dependency; });
    reply(Answer::of());
}

void DependencyRequests::cancelNumber(const QString& bottle, int number) {
    cancelMeant(bottle, [number](const Install& install) { return install.number == number; });
}

void DependencyRequests::cancelMeant(const QString& bottle, const Meant& isMeant) {
    const auto line = m_lines.find(bottle);
    if (line == m_lines.end())
        return;
    QVector<Install> waiting;
    for (int i = line->size() - 1; i > 0; --i) {
        if (isMeant(line->at(i)))
            waiting += line->takeAt(i);
    }
    // Where the first is meant as well, its end is that of all.
    const bool isFirstMeant = isMeant(line->head()) && !*line->head().cancelled;
    if (isFirstMeant)
        cancelFirst(bottle);
    for (const Install& install : qAsConst(waiting))
        tellEnd(install.ended, cancelled());
    if (!isFirstMeant && !waiting.isEmpty())
        Q_EMIT done(bottle, waiting.first().dependency, cancelled());
}

void DependencyRequests::cancelAll(const QString& bottle) {
    const auto line = m_lines.find(bottle);
    while (line != m_lines.end() && line->size() > 1) {
        const Install install = line->takeLast();
        tellEnd(install.ended, cancelled());
        Q_EMIT done(bottle, install.dependency, cancelled());
    }
    cancelFirst(bottle);
}

void DependencyRequests::close() {
    for (const QString& bottle : m_lines.keys())
        cancelAll(bottle);
}
