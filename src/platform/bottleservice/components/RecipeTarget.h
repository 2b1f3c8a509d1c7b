#pragma once

#include <QString>
#include <QStringList>

/// The facts about a bottle and its Wine that decide which steps of a recipe apply.
struct RecipeTarget {
    bool is64Bit = false;
    bool runs32Bit = true;  ///< the Wine can run 32-bit programs
    /// The add-on packages that this Wine itself would install (named in its appwiz.cpl), without their
    /// architecture, such as "wine-gecko-2.47.4". It uses Gecko of that version only.
    QStringList addons;

    /// `wine` is the path of the runner's program.
    static RecipeTarget of(const QString& bottlePath, const QString& wine);
};
