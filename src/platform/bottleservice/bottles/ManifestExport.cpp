#include "bottleservice/bottles/ManifestExport.h"

#include <QDebug>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

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

/// Whether a text says where something lies on this user's machine, or names the user by a profile of Wine.
bool namesThisMachine(const QString& text) {
    static const QRegularExpression profile(
        "(\\\\|(?<![a-z0-9])[a-z]:/)users[\\\\/]+(?!public\\b)[^\\\\/\\s]",
        QRegularExpression::CaseInsensitiveOption);
    const QString home = QDir::homePath();
    return ManifestPath::leadsOutOfWine(text) || profile.match(text).hasMatch() ||
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
    // A path outside the bottle or in a profile would reveal the user and be useless elsewhere.
    QString path = record["path"].toString();
    if (!ManifestPath::check(path, ManifestPath::Use::Run).isEmpty() || namesThisMachine(path))
        path = path.replace('\\', '/').section('/', -1);
    QString arguments = record["arguments"].toString();
    if (!canBeText(arguments, Long) || namesThisMachine(arguments)) {
        qInfo() << "the arguments are left out of the manifest";
        arguments.clear();
    }
    return {record["name"].toString(), path, arguments, textsOf(record["envs"], isShared)};
}

}  // namespace

QJsonObject parseForm(const QString& json, Reason* reason) {
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    const QJsonObject form = document.object();
    if (!document.isObject())
        *reason = "The description of the manifest is no JSON object.";
    for (const auto& [key, maximum] : FormKeys) {
        const QJsonValue value = form[QLatin1String(key)];
        if (reason->isEmpty() && (!value.isString() || value.toString().size() > maximum))
            *reason = Reason(Reason::ManifestValue, {key, QString::number(maximum)});
    }
    if (reason->isEmpty() && form["name"].toString().trimmed().isEmpty())
        *reason = Reason::ManifestName;
    return reason->isEmpty() ? form : QJsonObject();
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
        if (origin->downloadUrl == manifest.downloadUrl)
            manifest.setup = origin->setup;
        manifest.wineDeps = origin->wineDeps;
        bottle.registry = origin->bottle.registry;
        bottle.files = origin->bottle.files;
        bottle.commands = origin->bottle.commands;
    }
    return manifest;
}

QByteArray render(const Manifest& manifest, Reason* reason) {
    const QByteArray text = ManifestWriter::write(manifest);
    const ManifestReader::Result again = ManifestReader::read(text);
    if (again.error.isEmpty() && again.manifest == manifest)
        return text;
    qWarning().noquote() << "no manifest can hold these values:"
                         << (again.error.isEmpty() ? "a character is lost" : again.error);
    *reason = Reason::UnfitManifest;
    return {};
}

}  // namespace ManifestExport
