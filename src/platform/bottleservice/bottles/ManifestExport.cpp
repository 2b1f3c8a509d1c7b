#include "bottleservice/bottles/ManifestExport.h"

#include <QDebug>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include "manifest/ManifestPath.h"
#include "manifest/ManifestReader.h"
#include "manifest/ManifestValues.h"
#include "manifest/ManifestWriter.h"
#include "manifest/SettingRules.h"

namespace ManifestExport {

const char FileName[] = "/manifest.yml";

namespace {

using ManifestReader::Long;
using ManifestReader::Medium;
using ManifestReader::Short;

/// With the characters that the reader takes.
const struct {
    const char* key;
    int maximum;
} FormKeys[] = {{"bottlesName", Medium},  {"programUuid", Medium}, {"name", Short},
                {"introduction", Medium}, {"downloadUrl", Medium}, {"packageSize", Short},
                {"contributor", Short},   {"category", Short},     {"contributorEmail", Short}};

/// Whether a text says where something lies on this user's machine.
bool namesThisMachine(const QString& text) {
    const QString home = QDir::homePath();
    return ManifestPath::leadsOutOfWine(text) ||
           (home.size() > 1 && QString(text).replace('\\', '/').contains(home, Qt::CaseInsensitive));
}

bool canBeText(const QString& text, int maximum) {
    return text.size() <= maximum && ManifestValues::hasOnlyAllowed(text, "\n\t");
}

QMap<QString, QString> textsOf(const QJsonValue& object,
                               bool (*isAllowed)(const QString& name, const QString& value)) {
    QMap<QString, QString> texts;
    const QJsonObject from = object.toObject();
    for (auto it = from.begin(); it != from.end(); ++it) {
        if (isAllowed(it.key(), it.value().toString()) && texts.size() < ManifestReader::MaximumEntries)
            texts.insert(it.key(), it.value().toString());
        else
            qInfo() << it.key() << "is left out of the manifest";
    }
    return texts;
}

bool isOverride(const QString& dll, const QString& method) {
    return SettingRules::isDllName(dll) && SettingRules::isLoadMethod(method);
}

bool isFontPair(const QString& font, const QString& replacement) {
    return SettingRules::isFontName(font) && SettingRules::isFontName(replacement);
}

bool isShared(const QString& variable, const QString& value) {
    return SettingRules::isSharedVariable(variable) && canBeText(value, Medium) && !namesThisMachine(value);
}

Manifest::Parameters parametersOf(const QJsonObject& record) {
    Manifest::Parameters parameters;
    const int dpi = record["custom_dpi"].toInt();
    if (dpi >= SettingRules::MinimumDpi && dpi <= SettingRules::MaximumDpi)
        parameters.dpi = dpi;
    if (SettingRules::isRenderer(record["renderer"].toString()))
        parameters.renderer = record["renderer"].toString();
    for (const QString& name : Manifest::Parameters::switchNames()) {
        if (record.contains(name))
            parameters.switches.insert(name, record[name].toBool());
    }
    return parameters;
}

Manifest::Program programOf(const QJsonObject& record) {
    // A path outside the bottle would reveal the user's home and be useless elsewhere.
    QString path = record["path"].toString();
    if (!ManifestPath::check(path, ManifestPath::Use::Run).isEmpty())
        path = path.replace('\\', '/').section('/', -1);
    QString arguments = record["arguments"].toString();
    if (!canBeText(arguments, Long) || namesThisMachine(arguments)) {
        qInfo() << "the arguments are left out of the manifest";
        arguments.clear();
    }
    return {record["name"].toString(), path, arguments, textsOf(record["envs"], isShared)};
}

}  // namespace

QJsonObject parseForm(const QString& json, QString* error) {
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    const QJsonObject form = document.object();
    if (!document.isObject())
        *error = "The description of the manifest is no JSON object.";
    for (const auto& [key, maximum] : FormKeys) {
        const QJsonValue value = form[QLatin1String(key)];
        if (error->isEmpty() && (!value.isString() || value.toString().size() > maximum))
            *error = QString("\"%1\" of the manifest must be text of at most %2 characters.")
                         .arg(key)
                         .arg(maximum);
    }
    if (error->isEmpty() && form["name"].toString().trimmed().isEmpty())
        *error = "The manifest needs a name.";
    return error->isEmpty() ? form : QJsonObject();
}

Manifest make(const QJsonObject& form, const QJsonObject& record, const QJsonObject& program,
              const std::optional<Manifest>& origin) {
    Manifest manifest;
    manifest.name = form["name"].toString();
    manifest.introduction = form["introduction"].toString();
    manifest.category = form["category"].toString();
    manifest.downloadUrl = form["downloadUrl"].toString();
    manifest.packageSize = form["packageSize"].toString();
    manifest.contributor = {form["contributor"].toString(), form["contributorEmail"].toString()};
    manifest.wineCommand = record["Runner"].toString();
    Manifest::Bottle& bottle = manifest.bottle;
    bottle.windows = record["Windows"].toString();
    bottle.dxvk = record["DXVK"].toString();
    bottle.vkd3d = record["VKD3D"].toString();
    bottle.parameters = parametersOf(record["Parameters"].toObject());
    bottle.dllOverrides = textsOf(record["DLL_Overrides"], isOverride);
    bottle.fontReplacements = textsOf(record["Font_Replacements"], isFontPair);
    for (const QJsonValue& name : record["Installed_Dependencies"].toArray())
        bottle.dependencies += name.toString();
    manifest.programs = {programOf(program)};
    if (origin) {
        manifest.setup = origin->setup;
        manifest.wineDeps = origin->wineDeps;
        bottle.registry = origin->bottle.registry;
        bottle.files = origin->bottle.files;
        bottle.commands = origin->bottle.commands;
    }
    return manifest;
}

QByteArray render(const Manifest& manifest, QString* error) {
    const QByteArray text = ManifestWriter::write(manifest);
    const ManifestReader::Result again = ManifestReader::read(text);
    *error = again.error;
    if (error->isEmpty() && again.manifest != manifest)
        *error = "A value of the manifest has a character that YAML cannot keep.";
    return error->isEmpty() ? text : QByteArray();
}

}  // namespace ManifestExport
