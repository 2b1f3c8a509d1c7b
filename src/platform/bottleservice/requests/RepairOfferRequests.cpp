#include "bottleservice/requests/RepairOfferRequests.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/ChosenFile.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/DependencyRequests.h"
#include "bottleservice/requests/RequestChecks.h"

using Fault = Answer::Fault;

namespace {

constexpr int MaximumNames = 100;
const QLatin1String DependencyKind("dependency");
const QLatin1String RunnerKind("runner");

QString winetricksOf(const InstallPlan& plan) {
    for (const Recipe& recipe : plan.recipes) {
        for (const RecipeStep& step : recipe.steps) {
            if (step.kind == RecipeStep::Kind::Winetricks)
                return step.file;
        }
    }
    return {};
}

void tellRefusal(const Reason& refusal, QJsonObject* result) {
    result->insert("available", refusal.isEmpty());
    if (refusal.isEmpty())
        return;
    result->insert("error", refusal.text());
    result->insert("reasons", refusal.toJson());
}

Answer failure(const Reason& reason) {
    return Answer::of(JsonText::compact(
        QJsonObject{{"ok", false}, {"error", reason.text()}, {"reasons", reason.toJson()}}));
}

}  // namespace

RepairOfferRequests::RepairOfferRequests(BottleEngine* engine, Downloads* downloads,
                                         DependencyRequests* dependencies, QObject* parent)
    : QObject(parent), m_engine(engine), m_downloads(downloads), m_dependencies(dependencies) {}

RepairOfferRequests::~RepairOfferRequests() {
    close();
}

void RepairOfferRequests::recover() {
    ChosenFile::removeLeftovers(m_downloads->directory());
}

void RepairOfferRequests::describe(const QString& bottle, const QString& kind, const QStringList& names,
                                   const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    if ((kind != DependencyKind && kind != RunnerKind) || names.size() > MaximumNames) {
        reply(Answer::failure(Fault::InvalidArgs,
                              "Only dependencies and runners are described, and not too many at once."));
        return;
    }
    QJsonArray result;
    const QVector<InstallPlan> plans =
        kind == DependencyKind ? m_dependencies->plansOf(bottle, names) : QVector<InstallPlan>();
    const Sources sources = m_dependencies->sources();
    for (int i = 0; i < names.size(); ++i)
        result += kind == RunnerKind ? runner(names[i], sources) : dependency(names[i], plans[i], sources);
    reply(Answer::of(JsonText::compact(result)));
}

QJsonObject RepairOfferRequests::dependency(const QString& name, const InstallPlan& plan,
                                            const Sources& sources) const {
    QJsonObject result{{"name", name},
                       {"title", plan.recipes.isEmpty() ? QString() : plan.recipes.last().description}};
    QJsonArray needs;
    for (int i = 0; i + 1 < plan.recipes.size(); ++i)
        needs += plan.recipes[i].description.isEmpty() ? plan.recipes[i].name : plan.recipes[i].description;
    result.insert("needs", needs);
    QJsonArray files;
    for (const QString& file : Recipe::filesOf(plan.recipes))
        files += fileOf(sources.find(file));
    result.insert("files", files);
    result.insert("winetricks", winetricksOf(plan));
    tellRefusal(plan.refusal, &result);
    return result;
}

QJsonObject RepairOfferRequests::runner(const QString& name, const Sources& sources) const {
    const bool isInstalled = m_engine->bottles().runners().find(name).has_value();
    const QString archive = sources.archiveOf(RunnerKind, name);
    QJsonArray files;
    if (!isInstalled && !archive.isEmpty())
        files += fileOf(sources.find(archive));
    QJsonObject result{{"name", name},
                       {"title", name},
                       {"needs", QJsonArray()},
                       {"winetricks", QString()},
                       {"files", files}};
    tellRefusal(isInstalled ? Reason() : sources.refusal(RunnerKind, name), &result);
    return result;
}

QJsonObject RepairOfferRequests::fileOf(const Source& source) const {
    // The first address is a mirror where the user has any.
    const QString address = source.addresses.value(0);
    const QFileInfo cached(m_downloads->pathOf(source.file));
    const qint64 size = cached.isFile() ? cached.size() : source.size;
    return {{"name", source.file},
            {"size", double(size)},
            {"cached", cached.isFile()},
            {"host", QUrl(address).host()},
            {"address", Source::shownAddress(address)}};
}

Answer RepairOfferRequests::runnersFor32Bit() const {
    const Sources sources = m_dependencies->sources();
    const QStringList present = m_engine->bottles().runners().names();
    QJsonArray installed, supported;
    for (const QString& name : present) {
        if (Runners::runs32Bit(m_engine->bottles().runners().find(name)->wine))
            installed += name;
    }
    for (const QString& name : sources.components(RunnerKind)) {
        // Publishers put "wow64" into the names of builds that need no 32-bit libraries.
        if (!present.contains(name) &&
            sources.archiveOf(RunnerKind, name).contains("wow64", Qt::CaseInsensitive))
            supported += name;
    }
    return Answer::of(JsonText::compact(QJsonObject{{"installed", installed}, {"supported", supported}}));
}

void RepairOfferRequests::takeFile(const QString& bottle, const QString& dependency, const QString& path,
                                   const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    const Sources sources = m_dependencies->sources();
    const InstallPlan plan = m_dependencies->planOf(bottle, dependency);
    QVector<Source> wanted;
    for (const QString& file : Recipe::filesOf(plan.recipes))
        wanted += sources.find(file);
    if (wanted.isEmpty()) {
        reply(failure(plan.refusal.isEmpty() ? Reason(Reason::NoKnownFile, {BottleName::shown(dependency)})
                                             : plan.refusal));
        return;
    }
    ++m_running;
    Background::run(
        this,
        [path, wanted, directory = m_downloads->directory(), data = m_engine->dataDir(),
         cancelled = m_cancelled] {
            ChosenFile::Taken taken = ChosenFile::take(path, wanted, directory, *cancelled);
            if (taken.failure.isEmpty())
                taken.failure = ChosenFile::remember(data, taken.file, taken.sha256);
            return taken;
        },
        [this, reply](const ChosenFile::Taken& taken) {
            --m_running;
            reply(taken.failure.isEmpty()
                      ? Answer::of(JsonText::compact(QJsonObject{{"ok", true}, {"file", taken.file}}))
                      : failure(taken.failure));
        });
}
