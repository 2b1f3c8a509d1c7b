#include "bottleservice/components/InstallPlan.h"

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Sources.h"

namespace {

/// Empty, or why a recipe's own steps cannot be carried out.
QString refusalOf(const Recipe& recipe, bool hadSteps, const Sources& sources) {
    const QString name = BottleName::shown(recipe.name);
    if (recipe.steps.isEmpty())
        return hadSteps ? QString("Nothing of \"%1\" is made for the Wine of this bottle.").arg(name)
                        : QString("No file is known that \"%1\" could be installed from.").arg(name);
    for (const QString& file : recipe.files()) {
        const QString refusal = sources.refusal(sources.find(file));
        if (!refusal.isEmpty())
            return refusal;
    }
    return {};
}

RecipeStep winetricks(const QString& verb) {
    RecipeStep step;
    step.kind = RecipeStep::Kind::Winetricks;
    step.file = verb;
    return step;
}

}  // namespace

InstallPlan InstallPlan::make(const Asked& asked, const Recipes& recipes, const Sources& sources) {
    InstallPlan plan;
    plan.recipes = recipes.plan(asked.component, asked.installed, &plan.refusal);
    for (Recipe& recipe : plan.recipes) {
        const bool hadSteps = !recipe.steps.isEmpty();
        if (asked.target)
            recipe.keepFitting(*asked.target);
        const QString refusal = refusalOf(recipe, hadSteps, sources);
        if (refusal.isEmpty())
            continue;
        if (!recipe.winetricks.isEmpty() && asked.hasWinetricks)
            recipe.steps = {winetricks(recipe.winetricks)};
        else if (!recipe.winetricks.isEmpty())
            plan.refusal = refusal + QString(
                                         " The tool winetricks can install it (as \"%1\"): install the "
                                         "package winetricks and try again.")
                                         .arg(recipe.winetricks);
        else
            plan.refusal = refusal;
        if (!plan.refusal.isEmpty())
            return plan;
    }
    return plan;
}
