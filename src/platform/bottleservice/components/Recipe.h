#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

#include "bottleservice/components/RecipeTarget.h"
#include "bottleservice/result/Reason.h"
#include "bottleservice/settings/RegistryChange.h"

/// One step of a recipe, as the README beside the catalogue describes it.
struct RecipeStep {
    enum class Kind { Run, Extract, Fonts, Override, Registry, Winetricks };
    enum class Bottles { All, Win32, Win64 };

    Kind kind = Kind::Run;
    QString file;            ///< what is run or unpacked; the verb of winetricks
    QString archive;         ///< that what is run lies in; empty when it is fetched itself
    QStringList arguments;   ///< of what is run
    QStringList names;       ///< files of the archive; DLLs of an override
    QString mode;            ///< of an override, as bottle.yml has it ("n", "n,b", ...)
    bool registers = false;  ///< the extracted files are registered
    bool only32Bit = false;  ///< only 32-bit files are taken
    Bottles only = Bottles::All;
    QString addon;  ///< the step is for a Wine that asks for this package; empty is any
    RegistryChange registry;

    bool fits(const RecipeTarget& target) const;

    /// The files that must be there for it.
    QStringList files() const;
};

/// How one component gets into a bottle.
struct Recipe {
    QString name;
    QString description;
    QStringList needs;  ///< components that must be there first
    QVector<RecipeStep> steps;
    QString winetricks;  ///< the verb that does the same

    QStringList files() const;
    void keepFitting(const RecipeTarget& target);
};

/// The recipes of dependency.json beside the service, and of the one in the data directory, whose entries
/// win. An entry that makes no sense is told to the log and is as good as missing.
class Recipes {
public:
    Recipes(const QString& catalogueDir, const QString& dataDir);

    std::optional<Recipe> find(const QString& name) const;
    QStringList names() const { return m_recipes.keys(); }

    /// What is to be installed for a component, in order: first what it needs and the bottle does not have,
    /// last the component itself. Empty with a reason when something is unknown or needs itself.
    QVector<Recipe> plan(const QString& name, const QStringList& installed, Reason* error) const;

private:
    bool add(const QString& name, const QStringList& installed, QStringList* path, QVector<Recipe>* plan,
             Reason* error) const;

    QMap<QString, Recipe> m_recipes;
};
