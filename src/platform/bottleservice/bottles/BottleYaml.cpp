#include "bottleservice/bottles/BottleYaml.h"

#include <yaml-cpp/yaml.h>

#include <QDebug>
#include <QJsonArray>

#include "manifest/SettingRules.h"
#include "manifest/YamlText.h"

using YamlText::Kind;

namespace {

const char Overrides[] = "DLL_Overrides";
const char Fonts[] = "Font_Replacements";

struct KnownKey {
    const char* name;
    Kind kind;
};

// "Path" is listed so that a hand-written one has the type that readers expect.
const KnownKey BottleKeys[] = {
    {"Name", Kind::Text},
    {"Application", Kind::Text},
    {"Path", Kind::Text},
    {"Runner", Kind::Text},
    {"Windows", Kind::Text},
    {"Template", Kind::Text},
    {"DXVK", Kind::Text},
    {"VKD3D", Kind::Text},
    {"Emulator", Kind::Text},
    {"Parameters", Kind::Object},
    {Overrides, Kind::TextMap},
    {Fonts, Kind::TextMap},
    {"Pending_Registry", Kind::TextMap},
    {"External_Programs", Kind::Object},
    {"Installed_Dependencies", Kind::TextList},
};
const KnownKey ParameterKeys[] = {
    {"custom_dpi", Kind::Number}, {"renderer", Kind::Text},      {"cpu_rendering", Kind::Flag},
    {"discrete_gpu", Kind::Flag}, {"mem_optimized", Kind::Flag}, {"ntsync", Kind::Flag},
};
const KnownKey ProgramKeys[] = {
    {"id", Kind::Text},           {"name", Kind::Text},    {"path", Kind::Text},
    {"folder", Kind::Text},       {"icon", Kind::Text},    {"arguments", Kind::Text},
    {"envs", Kind::TextMap},      {"stars", Kind::Number}, {"auto_discovered", Kind::Flag},
    {"created_time", Kind::Text},
};

template <size_t N>
QJsonObject render(const YAML::Node& map, const KnownKey (&known)[N]) {
    QJsonObject object;
    if (!map.IsMap())
        return object;
    for (const auto& entry : map) {
        if (!entry.first.IsScalar())
            continue;
        const QString key = YamlText::scalarText(entry.first);
        Kind kind = Kind::Anything;
        for (const KnownKey& candidate : known) {
            if (key == QLatin1String(candidate.name))
                kind = candidate.kind;
        }
        object.insert(key, YamlText::toJson(entry.second, kind));
    }
    return object;
}

QJsonObject renderProgram(const YAML::Node& node, const QString& id) {
    QJsonObject program = render(node, ProgramKeys);
    program.insert("id", id);
    return program;
}

std::string utf8(const QString& text) {
    return text.toStdString();
}

/// Fonts have no suffix.
QString itself(const QString& name) {
    return name;
}

}  // namespace

BottleYaml::BottleYaml(const YAML::Node& root) : m_root(std::make_unique<YAML::Node>(root)) {}

BottleYaml::BottleYaml(BottleYaml&& other) noexcept = default;

BottleYaml& BottleYaml::operator=(BottleYaml&& other) noexcept = default;

BottleYaml::~BottleYaml() = default;

std::optional<BottleYaml> BottleYaml::parse(const QByteArray& text, QString* error) {
    const YAML::Node root = YamlText::parse(text, error);
    if (!error->isEmpty())
        return std::nullopt;
    if (!root.IsMap()) {
        *error = "it holds no settings";
        return std::nullopt;
    }
    return BottleYaml(root);
}

BottleYaml BottleYaml::fresh(const QString& name, const QString& runner, const QDateTime& now) {
    const std::pair<const char*, QJsonValue> values[] = {
        {"Name", name},
        {"Runner", runner},
        {"Windows", "win10"},
        {"DXVK", ""},
        {"VKD3D", ""},
        {"Created", now.toString(Qt::ISODate)},
        {"Parameters", QJsonObject{{"custom_dpi", 96},
                                   {"renderer", "gl"},
                                   {"cpu_rendering", false},
                                   {"discrete_gpu", false},
                                   {"mem_optimized", false},
                                   {"ntsync", false}}},
        {"DLL_Overrides", QJsonObject()},
        {"Font_Replacements", QJsonObject()},
        {"External_Programs", QJsonObject()},
        {"Installed_Dependencies", QJsonArray()},
    };
    YAML::Node root(YAML::NodeType::Map);
    for (const auto& value : values)
        root[value.first] = YamlText::fromJson(value.second);
    return BottleYaml(root);
}

QByteArray BottleYaml::toText() const {
    return YamlText::dump(*m_root);
}

QJsonObject BottleYaml::record() const {
    QJsonObject record = render(*m_root, BottleKeys);
    record.insert("Parameters", render(valueOf("Parameters"), ParameterKeys));
    QJsonObject programs;
    const YAML::Node entries = valueOf("External_Programs");
    if (entries.IsMap()) {
        for (const auto& entry : entries) {
            const QString id = YamlText::scalarText(entry.first);
            if (!id.isEmpty() && entry.second.IsMap())
                programs.insert(id, renderProgram(entry.second, id));
        }
    }
    QJsonObject overrides = record.value(Overrides).toObject();
    for (auto it = overrides.begin(); it != overrides.end(); ++it)
        it.value() = SettingRules::loadMethod(it.value().toString());
    if (record.contains(Overrides))
        record.insert(Overrides, overrides);
    // Left out when entries exist that cannot be read: an empty list would mean that the bottle may be
    // deleted.
    if (entries.IsMap() && (!programs.isEmpty() || entries.size() == 0))
        record.insert("External_Programs", programs);
    if (!record.contains("Installed_Dependencies"))
        record.insert("Installed_Dependencies", QJsonArray());
    return record;
}

QString BottleYaml::runner() const {
    return YamlText::scalarText(valueOf("Runner"));
}

QString BottleYaml::templateKey() const {
    return YamlText::scalarText(valueOf("Template"));
}

bool BottleYaml::hasProgram(const QString& id) const {
    const YAML::Node entries = valueOf("External_Programs");
    return entries.IsMap() && bool(entries[utf8(id)]);
}

QJsonObject BottleYaml::program(const QString& id) const {
    return hasProgram(id) ? renderProgram(valueOf("External_Programs")[utf8(id)], id) : QJsonObject();
}

void BottleYaml::setProgram(const QString& id, const QJsonObject& record) {
    YAML::Node entries = mapping("External_Programs");
    if (!hasProgram(id) || !valueOf("External_Programs")[utf8(id)].IsMap())
        entries[utf8(id)] = YAML::Node(YAML::NodeType::Map);
    YAML::Node entry = entries[utf8(id)];
    for (auto it = record.begin(); it != record.end(); ++it)
        entry[utf8(it.key())] = YamlText::fromJson(it.value());
    entry.remove("auto_discovered");
}

bool BottleYaml::removeProgram(const QString& id) {
    return hasProgram(id) && (*m_root)["External_Programs"].remove(utf8(id));
}

RegistryChange BottleYaml::pendingRegistry() const {
    return RegistryChange::fromJson(YamlText::toJson(valueOf("Pending_Registry"), Kind::TextMap).toObject());
}

void BottleYaml::setPendingRegistry(const RegistryChange& change) {
    if (!change.isEmpty())
        set("Pending_Registry", change.toJson());
    else if (valueOf("Pending_Registry").IsDefined())
        m_root->remove("Pending_Registry");
}

void BottleYaml::set(const char* key, const QJsonValue& value) {
    (*m_root)[key] = YamlText::fromJson(value);
}

void BottleYaml::setIn(const char* map, const QString& key, const QJsonValue& value) {
    mapping(map)[utf8(key)] = YamlText::fromJson(value);
}

void BottleYaml::remove(const char* map, const QString& key) {
    if (valueOf(map).IsMap())
        (*m_root)[map].remove(utf8(key));
}

void BottleYaml::removeSame(const char* map, const QString& key, Meaning meaning) {
    if (!valueOf(map).IsMap())
        return;
    QStringList same;
    for (const auto& entry : valueOf(map)) {
        const QString other = YamlText::scalarText(entry.first);
        if (other != key && meaning(other).compare(meaning(key), Qt::CaseInsensitive) == 0)
            same += other;
    }
    for (const QString& other : qAsConst(same))
        remove(map, other);
}

void BottleYaml::setOverride(const QString& dll, const QString& method) {
    removeSame(Overrides, dll, &SettingRules::moduleName);
    setIn(Overrides, dll, method);
}

void BottleYaml::removeOverride(const QString& dll) {
    removeSame(Overrides, dll, &SettingRules::moduleName);
    remove(Overrides, dll);
}

void BottleYaml::setFontReplacement(const QString& font, const QString& replacement) {
    removeSame(Fonts, font, &itself);
    setIn(Fonts, font, replacement);
}

void BottleYaml::removeFontReplacement(const QString& font) {
    removeSame(Fonts, font, &itself);
    remove(Fonts, font);
}

YAML::Node BottleYaml::mapping(const char* key) {
    if (!valueOf(key).IsMap()) {
        if ((*m_root)[key] && !(*m_root)[key].IsNull())
            qWarning() << key << "was no mapping and is replaced";
        (*m_root)[key] = YAML::Node(YAML::NodeType::Map);
    }
    return (*m_root)[key];
}

// Not the non-const operator, which would add the key.
YAML::Node BottleYaml::valueOf(const char* key) const {
    const YAML::Node root = *m_root;
    const YAML::Node value = root[key];
    return value ? value : YAML::Node(YAML::NodeType::Null);
}
