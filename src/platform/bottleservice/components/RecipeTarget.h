#pragma once

#include <QString>
#include <QStringList>

/// What of a bottle and its Wine decides which steps of a recipe are for it.
struct RecipeTarget {
    bool is64Bit = false;
    bool runs32Bit = true;  ///< the Wine has what programs of 32 bits need
    /// The packages that this Wine asks for in its own installer of add-ons (appwiz.cpl), without their
    /// architecture, such as "wine-gecko-2.47.4". It uses Gecko of that version only.
    QStringList addons;

    /// wine is the path of the runner's program.
    static RecipeTarget of(const QString& bottlePath, const QString& wine);
};
