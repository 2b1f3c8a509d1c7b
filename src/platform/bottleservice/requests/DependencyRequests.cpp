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
    Install wanted;
    wanted.dependency = dependency;
    add(bottle, wanted, reply);
}

int DependencyRequests::installFromStore(const QString& bottle, const QString& dependency,
                                         const Reply& ended) {
    Install wanted;
    wanted.dependency = dependency;
    wanted.fromStore = true;
    wanted.ended = ended;
    wanted.number = ++m_lastNumber;
    add(bottle, wanted, [](const Answer&) {});
    return wanted.number;
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
    const auto isSame = [&install](const Install& other) {
        return other.dependency == install.dependency && !other.fromStore && !install.fromStore &&
               !*other.cancelled;
    };
    const auto same = std::find_if(line.begin(), line.end(), isSame);
    if (same != line.end()) {
        ++same->askers;
        reply(Answer::of());
        return;
    }
    line.enqueue(install);
    if (line.size() == 1)
        startFirst(bottle, reply);
    else
        reply(Answer::of());
}

void DependencyRequests::startFirst(const QString& bottle, const Reply& reply) {
    if (m_lines[bottle].head().hasCome) {
        reply(Answer::of());
        firstEnded(bottle, Answer::of());
        return;
    }
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
    QVector<Source> wanted;
    for (const QString& file : Recipe::filesOf(recipes))
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
        [self = QPointer<DependencyRequests>(this), bottle, recipes](const Answer& answer) {
            if (self && answer.isGood())
                self->firstInstalled(bottle, recipes);
            else if (self)
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

/// What came along is not installed again for those who wait for it.
void DependencyRequests::firstInstalled(const QString& bottle, const QVector<Recipe>& recipes) {
    for (Install& install : m_lines[bottle]) {
        for (const Recipe& recipe : recipes)
            install.hasCome = install.hasCome || install.dependency == recipe.name;
    }
    firstEnded(bottle, Answer::of(namesOf(recipes)));
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
    // Queued: the receivers of done() come first. While the bottle's queue still has the job that has ended,
    // nobody would look for programs that run.
    const auto startNext = [this, bottle] { startFirst(bottle, [](const Answer&) {}); };
    if (!isLast && first.job)
        connect(first.job, &QObject::destroyed, this, startNext, Qt::QueuedConnection);
    else if (!isLast)
        QMetaObject::invokeMethod(this, startNext, Qt::QueuedConnection);
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
    const auto line = m_lines.find(bottle);
    if (line != m_lines.end() && !*line->head().cancelled && --line->head().askers == 0)
        cancelFirst(bottle);
    reply(Answer::of());
}

void DependencyRequests::cancelOne(const QString& bottle, const QString& dependency, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    const auto line = m_lines.find(bottle);
    // One of an import is meant only where there is no other.
    int found = -1;
    for (int place = 0; line != m_lines.end() && place < line->size(); ++place) {
        const Install& install = line->at(place);
        if (install.dependency == dependency && !*install.cancelled && (found < 0 || !install.fromStore))
            found = place;
    }
    if (found >= 0 && --(*line)[found].askers == 0)
        cancelAt(bottle, found);
    reply(Answer::of());
}

void DependencyRequests::cancelNumber(const QString& bottle, int number) {
    const auto line = m_lines.constFind(bottle);
    for (int place = 0; line != m_lines.constEnd() && place < line->size(); ++place) {
        if (line->at(place).number == number)
            return cancelAt(bottle, place);
    }
}

void DependencyRequests::cancelAt(const QString& bottle, int place) {
    if (place == 0)
        return cancelFirst(bottle);
    QQueue<Install>& line = m_lines[bottle];
    const Install waiting = line.takeAt(place);
    const auto isSame = [&waiting](const Install& other) {
        return other.dependency == waiting.dependency && !*other.cancelled;
    };
    const bool isAsked = std::any_of(line.cbegin(), line.cend(), isSame);
    tellEnd(waiting.ended, cancelled());
    if (!isAsked)
        Q_EMIT done(bottle, waiting.dependency, cancelled());
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
