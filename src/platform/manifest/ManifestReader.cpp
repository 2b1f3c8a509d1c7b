#include "manifest/ManifestReader.h"

#include <QRegularExpression>
#include <QUrl>
#include <algorithm>

#include "manifest/ManifestPath.h"
#include "manifest/ManifestSection.h"
#include "manifest/ManifestValues.h"
#include "manifest/RegistryRules.h"
#include "manifest/SettingRules.h"
#include "manifest/YamlTree.h"

using Lines = ManifestSection::Lines;
using Registry = Manifest::RegistryValue;

namespace {

using ManifestReader::Long;
using ManifestReader::MaximumEntries;
using ManifestReader::Medium;
using ManifestReader::Short;
constexpr qint64 MaximumSetupBytes = qint64(1) << 40;
constexpr int MaximumRegistryValues = 2000;
constexpr int MaximumCommands = 50;

void readSetup(ManifestSection& section, Manifest::SetupFile* setup) {
    static const QRegularExpression sum("\\A[0-9a-f]{64}\\z");
    setup->version = section.text("Version", Short);
    setup->sha256 = section.text("SHA256", Short).toLower();
    if (!setup->sha256.isEmpty() && !sum.match(setup->sha256).hasMatch())
        section.refuse("SHA256", "must be 64 hexadecimal digits");
    setup->size = section.number("Size", 0, MaximumSetupBytes).value_or(-1);
    setup->kind = section.text("Kind", Short);
}

/// Only from a scalar, as the application reads it before the service does; everything else is the default.
QString lenientText(ManifestSection& section, const char* key, Lines lines, const QString& otherwise) {
    const YamlTree* node = section.find(key);
    return node && node->kind == YamlTree::Kind::Text ? section.text(key, Medium, lines) : otherwise;
}

void readDebInfo(ManifestSection& root, Manifest* manifest) {
    // The application cannot read a manifest without it.
    if (!root.isWritten("DebInfo"))
        root.refuseMissing("DebInfo");
    root.map("DebInfo", [manifest](ManifestSection& section) {
        manifest->wineCommand = lenientText(section, "wine_cmd", Lines::One, Manifest::DefaultWineCommand);
        manifest->wineDeps = lenientText(section, "wine_deps", Lines::Many, {});
    });
}

void readParameters(ManifestSection& section, Manifest::Parameters* parameters) {
    if (const auto dpi = section.number("custom_dpi", SettingRules::MinimumDpi, SettingRules::MaximumDpi))
        parameters->dpi = int(*dpi);
    parameters->renderer = section.text("renderer", Short);
    if (!parameters->renderer.isEmpty() && !SettingRules::isRenderer(parameters->renderer))
        section.refuse("renderer", "must be gl, vulkan or gdi");
    for (const QString& name : Manifest::Parameters::switchNames()) {
        if (const auto value = section.flag(name.toLatin1().constData()))
            parameters->switches.insert(name, *value);
    }
}

void readRegistryData(ManifestSection& section, Registry* value) {
    static const char data[] = "Data";
    if (value->type == Registry::Type::Deleted) {
        if (section.has(data))
            section.refuse(data, "must be left out where the value is deleted");
        return;
    }
    if (value->type == Registry::Type::Texts) {
        value->texts = section.texts(data, MaximumEntries, Medium);
        if (value->texts.contains(QString("")))
            section.refuse(data, "must have no empty text, which would end the list");
        return;
    }
    const QString text = section.text(data, Long, Lines::Many);
    if (value->type == Registry::Type::Text || value->type == Registry::Type::ExpandText) {
        value->texts = QStringList{text};
    } else if (value->type == Registry::Type::Bytes) {
        const auto bytes = ManifestValues::bytes(text);
        if (!bytes)
            section.refuse(data, "must be pairs of hexadecimal digits");
        value->bytes = *bytes;
    } else {
        const auto number = ManifestValues::number(text);
        if (!number || (value->type == Registry::Type::Number && *number > 0xffffffffU))
            section.refuse(data, "must be a number that fits the type, decimal or with 0x");
        value->number = *number;
    }
}

void readRegistryValue(ManifestSection& section, Manifest::Bottle* bottle) {
    Registry value;
    const auto key = ManifestValues::registryKey(section.requiredText("Key", Medium));
    if (!key)
        section.refuse("Key", "must be a key below HKCU or HKLM");
    value.key = *key;
    value.name = section.text("Name", Short);
    const QString type = section.text("Type", Short);
    const ManifestValues::RegistryTypeName* found = nullptr;
    for (const auto& candidate : ManifestValues::RegistryTypes) {
        if (type == QLatin1String(candidate.name) || (type.isEmpty() && !found))
            found = &candidate;
    }
    if (!found)
        section.refuse("Type",
                       "must be REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ, REG_DWORD, REG_QWORD, REG_BINARY or "
                       "delete");
    value.type = found->type;
    const QString fault = RegistryRules::fault(value.key, value.name);
    if (value.type != Registry::Type::Deleted && !fault.isEmpty())
        section.refuse("Key", fault);
    readRegistryData(section, &value);
    bottle->registry += value;
}

void readFile(ManifestSection& section, Manifest::Bottle* bottle, int* bytesLeft) {
    Manifest::File file;
    file.path = section.requiredText("Path", Short);
    const QString fault = ManifestPath::check(file.path, ManifestPath::Use::Write);
    if (!fault.isEmpty())
        section.refuse("Path", fault);
    const QStringList parts = ManifestPath::parts(file.path.toLower());
    for (const Manifest::File& other : qAsConst(bottle->files)) {
        if (ManifestPath::parts(other.path.toLower()) == parts)
            section.refuse("Path", "is given twice");
    }
    if (section.has("Text") == section.has("Base64"))
        section.refuse("Path", "must have either Text or Base64 beside it");
    if (section.has("Text")) {
        file.content = section.text("Text", ManifestReader::MaximumBytes, Lines::Many).toUtf8();
    } else {
        const auto content =
            ManifestValues::base64(section.text("Base64", ManifestReader::MaximumBytes, Lines::Many));
        if (!content)
            section.refuse("Base64", "is not Base64");
        file.content = *content;
    }
    *bytesLeft -= file.content.size();
    if (*bytesLeft < 0)
        section.refuse(
            "Path",
            QString("makes all Files together larger than %1 bytes").arg(ManifestReader::MaximumFileBytes));
    bottle->files += file;
}

void readCommand(ManifestSection& section, Manifest::Bottle* bottle) {
    Manifest::Command command;
    command.program = section.requiredText("Program", Short);
    if (!ManifestPath::isProgramName(command.program)) {
        const QString fault = ManifestPath::check(command.program, ManifestPath::Use::Run);
        if (!fault.isEmpty())
            section.refuse("Program", fault + ", or be the plain name of a program that comes with Wine");
    }
    const QString name = command.program.section(QRegularExpression("[\\\\/]"), -1).toLower();
    if (name == "start" || name == "start.exe")
        section.refuse("Program", "must not be start.exe, which also starts programs outside of Wine");
    command.arguments = section.texts("Arguments", MaximumEntries, Medium);
    if (std::any_of(command.arguments.begin(), command.arguments.end(), ManifestPath::leadsOutOfWine))
        section.refuse("Arguments", "must not name drive Z:, a path of Unix, \"/unix\" or \"\\\\?\\\"");
    command.description = section.text("Description", Short * 2);
    bottle->commands += command;
}

bool isFontPair(const QString& font, const QString& replacement) {
    return SettingRules::isFontName(font) && SettingRules::isFontName(replacement);
}

bool isOverride(const QString& dll, const QString& method) {
    return SettingRules::isDllName(dll) && SettingRules::isLoadMethod(method);
}

QString componentName(ManifestSection& section, const char* key) {
    const QString name = section.text(key, Short);
    if (!name.isEmpty() && !SettingRules::isPlainName(name))
        section.refuse(key, "is no name of a component");
    return name;
}

void readBottle(ManifestSection& section, Manifest::Bottle* bottle) {
    bottle->windows = section.text("Windows", Short);
    if (!bottle->windows.isEmpty() && SettingRules::windowsVersion(bottle->windows, false).isEmpty())
        section.refuse("Windows", "is no Windows version such as win10");
    bottle->dxvk = componentName(section, "DXVK");
    bottle->vkd3d = componentName(section, "VKD3D");
    section.map("Parameters", [bottle](ManifestSection& it) { readParameters(it, &bottle->parameters); });
    bottle->dllOverrides =
        section.textMap("DLL_Overrides", MaximumEntries, Short,
                        "must have names of DLLs, each with n, b, \"n,b\", \"b,n\" or \"\"", isOverride);
    bottle->fontReplacements = section.textMap("Font_Replacements", MaximumEntries, Short,
                                               "must have names of fonts, each with another one", isFontPair);
    bottle->dependencies = section.texts("Dependencies", MaximumEntries, Short);
    for (const QString& name : qAsConst(bottle->dependencies)) {
        if (!SettingRules::isPlainName(name))
            section.refuse("Dependencies", "has an entry that is no name of a component");
    }
    section.maps("Registry", MaximumRegistryValues,
                 [bottle](ManifestSection& it) { readRegistryValue(it, bottle); });
    int bytesLeft = ManifestReader::MaximumFileBytes;
    section.maps("Files", MaximumEntries,
                 [bottle, &bytesLeft](ManifestSection& it) { readFile(it, bottle, &bytesLeft); });
    section.maps("Commands", MaximumCommands, [bottle](ManifestSection& it) { readCommand(it, bottle); });
}

void readProgram(ManifestSection& section, QVector<Manifest::Program>* programs) {
    Manifest::Program program;
    program.name = section.text("name", Medium);
    program.path = section.requiredText("path", Medium);
    if (program.path.contains('\\') || program.path.contains('/')) {
        const QString fault = ManifestPath::check(program.path, ManifestPath::Use::Run);
        if (!fault.isEmpty())
            section.refuse("path", fault);
    }
    program.arguments = section.text("arguments", Long, Lines::Many);
    program.envs = section.textMap(
        "envs", MaximumEntries, Medium, "must have names of variables that may be shared, each with a text",
        [](const QString& name, const QString&) { return SettingRules::isSharedVariable(name); });
    *programs += program;
}

void readPrograms(ManifestSection& root, Manifest* manifest) {
    if (root.has("Program") && root.has("Programs"))
        root.refuse("Program", "must not stand beside Programs");
    root.map("Program", [manifest](ManifestSection& it) { readProgram(it, &manifest->programs); });
    root.maps("Programs", MaximumEntries,
              [manifest](ManifestSection& it) { readProgram(it, &manifest->programs); });
}

void readAddress(ManifestSection& root, Manifest* manifest) {
    manifest->downloadUrl = root.text("downloadUrl", Medium);
    const QUrl url(manifest->downloadUrl, QUrl::TolerantMode);
    const bool isWeb =
        url.isValid() && (url.scheme() == "http" || url.scheme() == "https") && !url.host().isEmpty();
    if (!manifest->downloadUrl.isEmpty() && !isWeb)
        root.refuse("downloadUrl", "must be an address that begins with http:// or https://");
}

Manifest readRoot(const YamlTree& tree) {
    Manifest manifest;
    ManifestSection root(tree, "the manifest");
    manifest.name = root.requiredText("Name", Short);
    manifest.introduction = root.text("Introduction", Medium, Lines::Many);
    manifest.category = root.text("Category", Short);
    readAddress(root, &manifest);
    manifest.packageSize = root.text("packageSize", Short);
    root.map("Setup", [&manifest](ManifestSection& it) { readSetup(it, &manifest.setup); });
    root.map("Contributor", [&manifest](ManifestSection& it) {
        manifest.contributor.name = it.text("Name", Short);
        manifest.contributor.email = it.text("Email", Short);
    });
    readDebInfo(root, &manifest);
    root.map("Bottle", [&manifest](ManifestSection& it) { readBottle(it, &manifest.bottle); });
    readPrograms(root, &manifest);
    root.finish();
    return manifest;
}

}  // namespace

ManifestReader::Result ManifestReader::read(const QByteArray& text) {
    if (text.size() > MaximumBytes)
        return {{}, QString("The manifest is larger than %1 bytes.").arg(MaximumBytes)};
    QString error;
    const YamlTree tree = YamlTree::parse(text, &error);
    if (!error.isEmpty())
        return {{}, error};
    try {
        return {readRoot(tree), {}};
    } catch (const ManifestRefusal& refusal) {
        return {{}, QString::fromUtf8(refusal.what())};
    }
}
