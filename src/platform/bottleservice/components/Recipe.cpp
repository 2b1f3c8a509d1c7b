#include "bottleservice/components/Recipe.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <algorithm>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Sources.h"
#include "fenk/system/RegularFile.h"
#include "manifest/SettingRules.h"

using Kind = RecipeStep::Kind;
using Bottles = RecipeStep::Bottles;

namespace {

constexpr qint64 MaximumBytes = 4 * 1024 * 1024;
const QLatin1String Installer("msiexec");

QStringList texts(const QJsonValue& value) {
    QStringList list;
    for (const QJsonValue& element : value.toArray())
        list += element.toString();
    return list;
}

RegistryChange valuesOf(const QString& key, const QJsonObject& values) {
    RegistryChange change;
    for (auto it = values.begin(); it != values.end(); ++it)
        change = change.then(it.value().isDouble()
                                 ? RegistryChange::number(key, it.key(), quint32(it.value().toDouble()))
                                 : RegistryChange::text(key, it.key(), it.value().toString()));
    return change;
}

/// Returns false for unknown words.
bool readConditions(const QJsonObject& entry, RecipeStep* step) {
    static const QRegularExpression addon("\\A(wine-(gecko|mono)-[0-9.]+)?\\z");
    const QString only = entry["only"].toString();
    if (only == "win32")
        step->only = Bottles::Win32;
    else if (only == "win64")
        step->only = Bottles::Win64;
    step->addon = entry["addon"].toString();
    return (step->only != Bottles::All || !entry.contains("only")) && addon.match(step->addon).hasMatch();
}

std::optional<RecipeStep> stepOf(const QJsonObject& entry) {
    RecipeStep step;
    step.names = texts(entry["files"]);
    bool isGood = true;
    if (entry.contains("run")) {
        step.file = entry["run"].toString();
        step.archive = entry["from"].toString();
        step.arguments = texts(entry["arguments"]);
        isGood = Sources::isPlainName(step.file) &&
                 (!entry.contains("from") || Sources::isPlainName(step.archive));
    } else if (entry.contains("extract") || entry.contains("fonts")) {
        step.kind = entry.contains("fonts") ? Kind::Fonts : Kind::Extract;
        step.file = entry[entry.contains("fonts") ? "fonts" : "extract"].toString();
        step.only32Bit = entry["to"].toString() == "system32bit";
        step.registers = entry["register"].toBool();
        isGood = Sources::isPlainName(step.file) && !step.names.isEmpty();
        for (const QString& name : qAsConst(step.names))
            isGood = isGood && Sources::isPlainName(name);
    } else if (entry.contains("override")) {
        step.kind = Kind::Override;
        step.names = texts(entry["override"]);
        step.mode = SettingRules::loadMethod(entry["mode"].toString());
        isGood = SettingRules::isLoadMethod(step.mode);
        for (const QString& name : qAsConst(step.names))
            isGood = isGood && SettingRules::isDllName(name);
    } else if (entry.contains("registry")) {
        step.kind = Kind::Registry;
        step.registry = valuesOf(entry["registry"].toString(), entry["values"].toObject());
        isGood = !step.registry.isEmpty();
    } else {
        isGood = false;
    }
    return readConditions(entry, &step) && isGood ? std::optional(step) : std::nullopt;
}

/// Returns nothing, and the reason, when a part of the entry is invalid.
std::optional<Recipe> recipeOf(const QString& name, const QJsonValue& value, QString* fault) {
    static const QRegularExpression verb("\\A([A-Za-z0-9][A-Za-z0-9_.]*)?\\z");
    const QJsonObject entry = value.toObject();
    const QJsonObject how = entry["recipe"].toObject();
    Recipe recipe{
        name, entry["Description"].toString(), texts(entry["needs"]), {}, how["winetricks"].toString()};
    if (!Sources::isPlainName(name) || entry.isEmpty())
        *fault = "it is no component";
    else if (!verb.match(recipe.winetricks).hasMatch())
        *fault = "its verb of winetricks makes no sense";
    for (const QJsonValue& part : how["steps"].toArray()) {
        if (const auto step = stepOf(part.toObject()))
            recipe.steps += *step;
        else
            *fault = "its recipe has a step that makes no sense";
    }
    return fault->isEmpty() ? std::optional(recipe) : std::nullopt;
}

}  // namespace

QStringList RecipeStep::files() const {
    if (kind == Kind::Extract || kind == Kind::Fonts)
        return {file};
    if (kind != Kind::Run)
        return {};
    if (!archive.isEmpty())
        return {archive};
    // Wine would install the package itself, but it is not there.
    return file == Installer ? arguments.filter(".msi", Qt::CaseInsensitive) : QStringList{file};
}

bool RecipeStep::fits(const RecipeTarget& target) const {
    const bool isForBits = only == Bottles::All || (only == Bottles::Win64) == target.is64Bit;
    return isForBits && (addon.isEmpty() || target.addons.contains(addon));
}

void Recipe::keepFitting(const RecipeTarget& target) {
    const auto last = std::remove_if(steps.begin(), steps.end(),
                                     [&](const RecipeStep& step) { return !step.fits(target); });
    steps.erase(last, steps.end());
}

QStringList Recipe::files() const {
    QStringList all;
    for (const RecipeStep& step : steps)
        all += step.files();
    all.removeDuplicates();
    return all;
}

QStringList Recipe::filesOf(const QVector<Recipe>& recipes) {
    QStringList all;
    for (const Recipe& recipe : recipes)
        all += recipe.files();
    all.removeDuplicates();
    return all;
}

Recipes::Recipes(const QString& catalogueDir, const QString& dataDir) {
    for (const QString& directory : {catalogueDir, dataDir}) {
        const QString path = directory + "/dependency.json";
        if (!QFile::exists(path))
            continue;
        QJsonParseError error;
        const QByteArray text = Fenk::RegularFile::read(path, MaximumBytes).value_or(QByteArray());
        const QJsonObject entries = QJsonDocument::fromJson(text, &error).object();
        if (error.error != QJsonParseError::NoError)
            qWarning() << path << "cannot be used:" << error.errorString();
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            QString fault;
            if (const auto recipe = recipeOf(it.key(), it.value(), &fault))
                m_recipes.insert(it.key(), *recipe);
            else
                qWarning() << path << "has a bad entry" << BottleName::shown(it.key()) << fault;
        }
    }
}

std::optional<Recipe> Recipes::find(const QString& name) const {
    const auto recipe = m_recipes.constFind(name);
    return recipe == m_recipes.constEnd() ? std::nullopt : std::optional(*recipe);
}

QVector<Recipe> Recipes::plan(const QString& name, const QStringList& installed, Reason* error,
                              QString* unusable) const {
    QVector<Recipe> plan;
    QStringList path;
    QStringList others = installed;
    others.removeAll(name);
    return add(name, others, &path, &plan, error, unusable) ? plan : QVector<Recipe>();
}

bool Recipes::add(const QString& name, const QStringList& installed, QStringList* path, QVector<Recipe>* plan,
                  Reason* error, QString* unusable) const {
    const auto isPlanned = [plan](const QString& wanted) {
        for (const Recipe& recipe : *plan) {
            if (recipe.name == wanted)
                return true;
        }
        return false;
    };
    if (installed.contains(name) || isPlanned(name))
        return true;
    const auto recipe = find(name);
    if (!recipe || path->contains(name)) {
        if (unusable)
            *unusable = name;
        *error = recipe ? QString("The component \"%1\" needs itself.").arg(BottleName::shown(name))
                        : Reason(Reason::NoComponent, {BottleName::shown(name)});
        return false;
    }
    *path += name;
    for (const QString& needed : recipe->needs) {
        if (!add(needed, installed, path, plan, error, unusable))
            return false;
    }
    path->removeLast();
    *plan += *recipe;
    return true;
}
