#include "manifest/ManifestWriter.h"

#include <yaml-cpp/yaml.h>

#include <QJsonArray>
#include <QJsonObject>

#include "manifest/ManifestValues.h"
#include "manifest/YamlText.h"

namespace {

using Registry = Manifest::RegistryValue;

/// Adds keys in the order of the calls; what was not given is left out.
class MapWriter {
public:
    void text(const char* key, const QString& value) {
        if (!value.isEmpty())
            add(key, YamlText::fromJson(value));
    }
    void plain(const char* key, const QJsonValue& value) { add(key, YamlText::fromJson(value)); }
    void texts(const char* key, const QStringList& values) {
        if (!values.isEmpty())
            add(key, YamlText::fromJson(QJsonArray::fromStringList(values)));
    }
    void textMap(const char* key, const QMap<QString, QString>& values) {
        QJsonObject object;
        for (auto it = values.begin(); it != values.end(); ++it)
            object.insert(it.key(), it.value());
        if (!object.isEmpty())
            add(key, YamlText::fromJson(object));
    }
    void map(const char* key, const MapWriter& other) {
        if (other.m_node.size() > 0)
            add(key, other.m_node);
    }
    template <class Item>
    void maps(const char* key, const QVector<Item>& items, MapWriter (*write)(const Item&)) {
        YAML::Node list(YAML::NodeType::Sequence);
        for (const Item& item : items)
            list.push_back(write(item).m_node);
        if (!items.isEmpty())
            add(key, list);
    }
    const YAML::Node& node() const { return m_node; }

private:
    void add(const char* key, const YAML::Node& value) { m_node.force_insert(key, value); }

    YAML::Node m_node{YAML::NodeType::Map};
};

MapWriter registryValue(const Registry& value) {
    MapWriter map;
    map.text("Key", value.key);
    map.text("Name", value.name);
    for (const auto& candidate : ManifestValues::RegistryTypes) {
        if (candidate.type == value.type)
            map.plain("Type", candidate.name);
    }
    switch (value.type) {
        case Registry::Type::Text:
        case Registry::Type::ExpandText:
            map.plain("Data", value.texts.value(0));
            break;
        case Registry::Type::Texts:
            map.texts("Data", value.texts);
            break;
        case Registry::Type::Number:
        case Registry::Type::LongNumber:
            map.plain("Data", QString::number(value.number));
            break;
        case Registry::Type::Bytes:
            map.plain("Data", QString::fromLatin1(value.bytes.toHex(' ')));
            break;
        case Registry::Type::Deleted:
            break;
    }
    return map;
}

MapWriter file(const Manifest::File& value) {
    MapWriter map;
    map.text("Path", value.path);
    if (ManifestValues::isText(value.content))
        map.plain("Text", QString::fromUtf8(value.content));
    else
        map.plain("Base64", QString::fromLatin1(value.content.toBase64()));
    return map;
}

MapWriter command(const Manifest::Command& value) {
    MapWriter map;
    map.text("Program", value.program);
    map.texts("Arguments", value.arguments);
    map.text("Description", value.description);
    return map;
}

MapWriter program(const Manifest::Program& value) {
    MapWriter map;
    map.text("name", value.name);
    map.text("path", value.path);
    map.text("arguments", value.arguments);
    map.textMap("envs", value.envs);
    return map;
}

MapWriter parameters(const Manifest::Parameters& value) {
    MapWriter map;
    if (value.dpi)
        map.plain("custom_dpi", *value.dpi);
    map.text("renderer", value.renderer);
    for (auto it = value.switches.begin(); it != value.switches.end(); ++it)
        map.plain(it.key().toLatin1().constData(), it.value());
    return map;
}

MapWriter bottle(const Manifest::Bottle& value) {
    MapWriter map;
    map.text("Windows", value.windows);
    map.text("DXVK", value.dxvk);
    map.text("VKD3D", value.vkd3d);
    map.map("Parameters", parameters(value.parameters));
    map.textMap("DLL_Overrides", value.dllOverrides);
    map.textMap("Font_Replacements", value.fontReplacements);
    map.texts("Dependencies", value.dependencies);
    map.maps("Registry", value.registry, registryValue);
    map.maps("Files", value.files, file);
    map.maps("Commands", value.commands, command);
    return map;
}

MapWriter setup(const Manifest::SetupFile& value) {
    MapWriter map;
    map.text("Version", value.version);
    map.text("SHA256", value.sha256);
    if (value.size >= 0)
        map.plain("Size", value.size);
    map.text("Kind", value.kind);
    return map;
}

}  // namespace

QByteArray ManifestWriter::write(const Manifest& manifest) {
    MapWriter root;
    root.text("Name", manifest.name);
    root.text("Introduction", manifest.introduction);
    root.text("Category", manifest.category);
    root.text("downloadUrl", manifest.downloadUrl);
    root.text("packageSize", manifest.packageSize);
    root.map("Setup", setup(manifest.setup));
    MapWriter contributor;
    contributor.text("Name", manifest.contributor.name);
    contributor.text("Email", manifest.contributor.email);
    root.map("Contributor", contributor);
    MapWriter debInfo;
    debInfo.plain("wine_cmd", manifest.wineCommand);
    debInfo.plain("wine_deps", manifest.wineDeps);
    root.map("DebInfo", debInfo);
    root.map("Bottle", bottle(manifest.bottle));
    root.maps("Programs", manifest.programs, program);
    return YamlText::dump(root.node());
}
