#include "bottleservice/bottles/ManifestExport.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>

#include "manifest/ManifestPath.h"
#include "manifest/ManifestReader.h"
#include "manifest/ManifestWriter.h"
#include "manifest/SettingRules.h"

namespace ManifestExport {

const char FileName[] = "/manifest.yml";

namespace {

constexpr int MaximumTextCharacters = 4096;
const char* const FormKeys[] = {"bottlesName", "programUuid", "name",     "introduction",    "downloadUrl",
                                "packageSize", "contributor", "category", "contributorEmail"};

QMap<QString, QString> textsOf(const QJsonValue& object,
                               bool (*isAllowed)(const QString& name, const QString& value)) {
    QMap<QString, QString> texts;
    const QJsonObject from = object.toObject();
    for (auto it = from.begin(); it != from.end(); ++it) {
        if (isAllowed(it.key(), it.value().toString()))
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

bool isShared(const QString& variable, const QString&) {
    return SettingRules::isSharedVariable(variable);
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
    return {record["name"].toString(), path, record["arguments"].toString(),
            textsOf(record["envs"], isShared)};
}

}  // namespace

QJsonObject parseForm(const QString& json, QString* error) {
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    const QJsonObject form = document.object();
    if (!document.isObject())
        *error = "The description of the manifest is no JSON object.";
    for (const char* key : FormKeys) {
        const QJsonValue value = form[QLatin1String(key)];
        if (error->isEmpty() && (!value.isString() || value.toString().size() > MaximumTextCharacters))
            *error = QString("\"%1\" of the manifest must be text of at most %2 characters.")
                         .arg(key)
                         .arg(MaximumTextCharacters);
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
    *error = ManifestReader::read(text).error;
    return error->isEmpty() ? text : QByteArray();
}

}  // namespace ManifestExport
