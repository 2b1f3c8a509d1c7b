#pragma once

#include <optional>

#include "bottleservice/components/Recipe.h"

class Sources;

/// What the installation of a component consists of, or why it is refused: decided before anything is
/// fetched, and without the network.
struct InstallPlan {
    struct Asked {
        QString component;
        QStringList installed;  ///< components that the bottle has
        bool hasWinetricks = false;
        std::optional<RecipeTarget> target;  ///< without one every step counts, as for any bottle
    };

    QVector<Recipe> recipes;  ///< in the order in which they are carried out
    Reason refusal;           ///< empty where it can be carried out

    static InstallPlan make(const Asked& asked, const Recipes& recipes, const Sources& sources);
};
