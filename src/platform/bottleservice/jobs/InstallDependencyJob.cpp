#include "bottleservice/jobs/InstallDependencyJob.h"

#include <QJsonArray>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/RecipeRunner.h"

namespace {

const QLatin1String Installed("Installed_Dependencies");

}  // namespace

InstallDependencyJob::InstallDependencyJob(const JobBottle& bottle, const QVector<Recipe>& recipes,
                                           Downloads* downloads, Reply reply)
    : InstallJob(bottle, std::move(reply)), m_recipes(recipes), m_downloads(downloads) {}

InstallJob::Need InstallDependencyJob::prepare(const BottleYaml& settings, const Runner& runner,
                                               Reason* refusal) {
    m_runner = runner;
    if (runner.wine.isEmpty())
        *refusal = Reason(Reason::NoRunner, {BottleName::shown(settings.runner())});
    return Need::Work;
}

void InstallDependencyJob::work() {
    m_steps = new RecipeRunner(
        // Unpacks in the backup's directory, so that it is removed with it after a kill.
        m_runner, bottle().path(), BottleBackup::pathOf(bottle().path()), m_recipes,
        [downloads = m_downloads](const QString& file) { return downloads->pathOf(file); }, this);
    connect(m_steps, &RecipeRunner::described, this, &InstallDependencyJob::described);
    connect(m_steps, &RecipeRunner::stepDone, this, &InstallDependencyJob::stepDone);
    connect(m_steps, &RecipeRunner::finished, this, [this](const Reason& reason) { worked(reason); });
    m_steps->start();
}

void InstallDependencyJob::abort() {
    m_steps->cancel();
}

void InstallDependencyJob::enter(BottleYaml* settings) {
    QJsonArray installed = settings->record()[Installed].toArray();
    for (const Recipe& recipe : qAsConst(m_recipes)) {
        if (!installed.contains(recipe.name))
            installed += recipe.name;
    }
    settings->set(Installed.data(), installed);
    const QJsonObject overrides = m_steps->overrides();
    for (auto it = overrides.begin(); it != overrides.end(); ++it)
        settings->setOverride(it.key(), it.value().toString());
}
