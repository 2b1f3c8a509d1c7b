#include "bottleservice/components/Recipe.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/PlainFile.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/settings/DllOverrides.h"

using Kind = RecipeStep::Kind;

namespace {

constexpr qint64 MaximumBytes = 4 * 1024 * 1024;
const QLatin1String Installer("msiexec");

QStringList texts(const QJsonValue& value) {
    QStringList list;
    for (const QJsonValue& element : value.toArray())
        list += element.toString();
    return list;
}

/// "native,builtin" is "n,b" in a bottle.
QString methodOf(const QString& mode) {
    QStringList letters;
    for (const QString& word : mode.split(',', Qt::SkipEmptyParts))
        letters += word.trimmed().left(1);
    return letters.join(',');
}

RegistryChange valuesOf(const QString& key, const QJsonObject& values) {
    RegistryChange change;
    for (auto it = values.begin(); it != values.end(); ++it)
        change = change.then(it.value().isDouble()
                                 ? RegistryChange::number(key, it.key(), quint32(it.value().toDouble()))
                                 : RegistryChange::text(key, it.key(), it.value().toString()));
    return change;
}

std::optional<RecipeStep> stepOf(const QJsonObject& entry) {
    RecipeStep step;
    step.onlyWin64 = entry["only"].toString() == "win64";
    step.names = texts(entry["files"]);
    bool isGood = true;
    if (entry.contains("run")) {
        step.file = entry["run"].toString();
        step.arguments = texts(entry["arguments"]);
        isGood = Sources::isPlainName(step.file);
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
        step.mode = methodOf(entry["mode"].toString());
        isGood = DllOverrides::isMethod(step.mode);
        for (const QString& name : qAsConst(step.names))
            isGood = isGood && DllOverrides::isName(name);
    } else if (entry.contains("registry")) {
        step.kind = Kind::Registry;
        step.registry = valuesOf(entry["registry"].toString(), entry["values"].toObject());
        isGood = !step.registry.isEmpty();
    } else {
        isGood = false;
    }
    return isGood ? std::optional(step) : std::nullopt;
}

}  // namespace

QStringList RecipeStep::files() const {
    if (kind == Kind::Extract || kind == Kind::Fonts)
        return {file};
    if (kind != Kind::Run)
        return {};
    // Wine's own installer of packages is there; the package is not.
    return file == Installer ? arguments.filter(".msi", Qt::CaseInsensitive) : QStringList{file};
}

QStringList Recipe::files() const {
    QStringList all;
    for (const RecipeStep& step : steps)
        all += step.files();
    all.removeDuplicates();
    return all;
}

Recipes::Recipes(const QString& catalogueDir, const QString& dataDir) {
    for (const QString& directory : {catalogueDir, dataDir}) {
        const QString path = directory + "/dependency.json";
        if (!QFile::exists(path))
            continue;
        QJsonParseError error;
        const QByteArray text = PlainFile::read(path, MaximumBytes).value_or(QByteArray());
        const QJsonObject entries = QJsonDocument::fromJson(text, &error).object();
        if (error.error != QJsonParseError::NoError)
            qWarning() << path << "cannot be used:" << error.errorString();
        for (auto it = entries.begin(); it != entries.end(); ++it)
            m_entries.insert(it.key(), it.value());
    }
}

std::optional<Recipe> Recipes::find(const QString& name) const {
    const QJsonObject entry = m_entries[name].toObject();
    if (entry.isEmpty())
        return std::nullopt;
    Recipe recipe{name, entry["Description"].toString(), texts(entry["needs"]), {}, {}};
    const QJsonObject how = entry["recipe"].toObject();
    recipe.winetricks = how["winetricks"].toString();
    for (const QJsonValue& value : how["steps"].toArray()) {
        const auto step = stepOf(value.toObject());
        if (!step) {
            qWarning() << "the recipe of" << BottleName::shown(name) << "has a step that makes no sense";
            return std::nullopt;
        }
        recipe.steps += *step;
    }
    return recipe;
}

QVector<Recipe> Recipes::plan(const QString& name, const QStringList& installed, QString* error) const {
    QVector<Recipe> plan;
    QStringList path;
    QStringList others = installed;
    others.removeAll(name);
    return add(name, others, &path, &plan, error) ? plan : QVector<Recipe>();
}

bool Recipes::add(const QString& name, const QStringList& installed, QStringList* path, QVector<Recipe>* plan,
                  QString* error) const {
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
        *error = recipe ? QString("The component \"%1\" needs itself.").arg(BottleName::shown(name))
                        : QString("There is no component \"%1\".").arg(BottleName::shown(name));
        return false;
    }
    *path += name;
    for (const QString& needed : recipe->needs) {
        if (!add(needed, installed, path, plan, error))
            return false;
    }
    path->removeLast();
    *plan += *recipe;
    return true;
}
