#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

#include "bottleservice/components/RecipeTarget.h"
#include "bottleservice/result/Reason.h"
#include "bottleservice/settings/RegistryChange.h"

/// One step of a recipe; the README beside the catalogue describes them.
struct RecipeStep {
    enum class Kind { Run, Extract, Fonts, Override, Registry, Winetricks };
    enum class Bottles { All, Win32, Win64 };

    Kind kind = Kind::Run;
    QString file;            ///< to run or unpack; or the verb of winetricks
    QString archive;         ///< that contains the file to run; empty when the file itself is fetched
    QStringList arguments;   ///< of the file to run
    QStringList names;       ///< files of the archive; DLLs of an override
    QString mode;            ///< of an override, as bottle.yml has it ("n", "n,b", ...)
    bool registers = false;  ///< the extracted files are registered
    bool only32Bit = false;  ///< only 32-bit files are taken
    Bottles only = Bottles::All;
    QString addon;  ///< only for a Wine that asks for this package; empty for any Wine
    RegistryChange registry;

    bool fits(const RecipeTarget& target) const;

    /// The files that must have been fetched for it.
    QStringList files() const;
};

/// How one component is installed into a bottle.
struct Recipe {
    QString name;
    QString description;
    QStringList needs;  ///< components that must be installed first
    QVector<RecipeStep> steps;
    QString winetricks;  ///< the verb that installs the same component

    QStringList files() const;
    /// The files of all of them, each once.
    static QStringList filesOf(const QVector<Recipe>& recipes);
    void keepFitting(const RecipeTarget& target);
};

/// The recipes of dependency.json in the catalogue, and of the one in the data directory, whose entries take
/// precedence. An invalid entry is logged and ignored.
class Recipes {
public:
    Recipes(const QString& catalogueDir, const QString& dataDir);

    std::optional<Recipe> find(const QString& name) const;
    QStringList names() const { return m_recipes.keys(); }

    /// The recipes to install for a component, in order: first the components that it needs and the bottle
    /// does not have, last the component itself. Empty, with a reason, when one is unknown or needs itself;
    /// `unusable` is its name then.
    QVector<Recipe> plan(const QString& name, const QStringList& installed, Reason* error,
                         QString* unusable = nullptr) const;

private:
    bool add(const QString& name, const QStringList& installed, QStringList* path, QVector<Recipe>* plan,
             Reason* error, QString* unusable) const;

    QMap<QString, Recipe> m_recipes;
};
