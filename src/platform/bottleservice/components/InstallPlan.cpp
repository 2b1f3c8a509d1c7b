#include "bottleservice/components/InstallPlan.h"

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Sources.h"

namespace {

/// Returns why a recipe's own steps cannot be carried out, empty if they can.
Reason refusalOf(const Recipe& recipe, bool hadSteps, const Sources& sources) {
    const QString name = BottleName::shown(recipe.name);
    if (recipe.steps.isEmpty())
        return Reason(hadSteps ? Reason::NotForThisWine : Reason::NoKnownFile, {name});
    for (const QString& file : recipe.files()) {
        const Reason refusal = sources.refusal(sources.find(file));
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
        const Reason refusal = refusalOf(recipe, hadSteps, sources);
        if (refusal.isEmpty())
            continue;
        if (!recipe.winetricks.isEmpty() && asked.hasWinetricks)
            recipe.steps = {winetricks(recipe.winetricks)};
        else
            plan.refusal = refusal;
        if (!plan.refusal.isEmpty() && !recipe.winetricks.isEmpty())
            plan.refusal += Reason(Reason::HasWinetricks, {recipe.winetricks});
        if (!plan.refusal.isEmpty())
            return plan;
    }
    return plan;
}
