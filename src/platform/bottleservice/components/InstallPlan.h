#pragma once

#include <optional>

#include "bottleservice/components/Recipe.h"

class Sources;

/// What the installation of a component consists of, or why it is refused. Decided before anything is
/// fetched, without the network.
struct InstallPlan {
    struct Asked {
        QString component;
        QStringList installed;  ///< components that the bottle has
        bool hasWinetricks = false;
        std::optional<RecipeTarget> target;  ///< without one the steps for all bottles are taken
    };

    QVector<Recipe> recipes;  ///< in the order of installation
    Reason refusal;           ///< empty when it can be carried out

    static InstallPlan make(const Asked& asked, const Recipes& recipes, const Sources& sources);
};
