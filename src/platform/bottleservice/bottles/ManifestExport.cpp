#include "bottleservice/bottles/Manifest.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "bottleservice/bottles/WindowsPath.h"
#include "manifest/YamlText.h"

namespace Manifest {

const char FileName[] = "/manifest.yml";

namespace {

constexpr int MaximumTextCharacters = 4096;
const char* const FormKeys[] = {"bottlesName", "programUuid", "name",     "introduction",    "downloadUrl",
                                "packageSize", "contributor", "category", "contributorEmail"};

YAML::Node picked(const QJsonObject& from, std::initializer_list<std::pair<const char*, const char*>> keys) {
    YAML::Node node(YAML::NodeType::Map);
    for (const auto& [target, source] : keys) {
        if (from.contains(QLatin1String(source)))
            node[target] = YamlText::fromJson(from[QLatin1String(source)]);
    }
    return node;
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

QByteArray render(const QJsonObject& form, const QJsonObject& record, const QJsonObject& program) {
    YAML::Node root = picked(form, {{"Name", "name"},
                                    {"Introduction", "introduction"},
                                    {"Category", "category"},
                                    {"downloadUrl", "downloadUrl"},
                                    {"packageSize", "packageSize"}});
    root["Contributor"] = picked(form, {{"Name", "contributor"}, {"Email", "contributorEmail"}});
    root["DebInfo"] = picked({{"wine_cmd", record["Runner"]}, {"wine_deps", ""}},
                             {{"wine_cmd", "wine_cmd"}, {"wine_deps", "wine_deps"}});
    root["Bottle"] = picked(record, {{"Windows", "Windows"},
                                     {"DXVK", "DXVK"},
                                     {"VKD3D", "VKD3D"},
                                     {"Parameters", "Parameters"},
                                     {"DLL_Overrides", "DLL_Overrides"},
                                     {"Font_Replacements", "Font_Replacements"},
                                     {"Dependencies", "Installed_Dependencies"}});
    // A path outside the bottle would reveal the user's home and be useless elsewhere.
    QJsonObject shown = program;
    const QString path = program["path"].toString();
    if (!WindowsPath::isWindowsPath(path) || !path.startsWith("c:", Qt::CaseInsensitive))
        shown["path"] = QString(path).replace('\\', '/').section('/', -1);
    root["Program"] =
        picked(shown, {{"name", "name"}, {"path", "path"}, {"arguments", "arguments"}, {"envs", "envs"}});
    return YamlText::dump(root);
}

}  // namespace Manifest
