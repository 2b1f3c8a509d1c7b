#pragma once

#include <QVector>

#include "bottleservice/components/Recipe.h"
#include "bottleservice/jobs/InstallJob.h"

class Downloads;
class RecipeRunner;

/// Installs components into a bottle by their recipes, whose files have been fetched.
class InstallDependencyJob : public InstallJob {
    Q_OBJECT

public:
    InstallDependencyJob(const JobBottle& bottle, const QVector<Recipe>& recipes, Downloads* downloads,
                         Reply reply);

Q_SIGNALS:
    void described(const QString& text);
    void stepDone(int done, int total);

protected:
    Need prepare(const BottleYaml& settings, const Runner& runner, Reason* refusal) override;
    void work() override;
    void abort() override;
    void enter(BottleYaml* settings) override;

private:
    QVector<Recipe> m_recipes;
    Downloads* m_downloads;
    Runner m_runner;
    RecipeRunner* m_steps = nullptr;
};
