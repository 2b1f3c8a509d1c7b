#include "bottleservice/jobs/SetupSettings.h"

#include <QDebug>
#include <QFileInfo>
#include <QUuid>

#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/SetupManifest.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/settings/DllOverrides.h"
#include "manifest/SettingRules.h"

namespace SetupSettings {

namespace {

const char Parameters[] = "Parameters";

RegistryChange applyWindows(const QString& code, bool is64Bit, BottleYaml* settings, QStringList* warnings) {
    const QString version = SettingRules::windowsVersion(code, is64Bit);
    if (code.isEmpty())
        return {};
    if (version.isEmpty()) {
        *warnings +=
            QString("A 64-bit bottle cannot have the Windows version \"%1\"; it keeps its own.").arg(code);
        return {};
    }
    settings->set("Windows", version);
    return RegistryChange::windowsVersion(version);
}

RegistryChange applyParameters(const Manifest::Parameters& parameters, BottleYaml* settings) {
    for (auto it = parameters.switches.begin(); it != parameters.switches.end(); ++it)
        settings->setIn(Parameters, it.key(), it.value());
    if (!parameters.renderer.isEmpty())
        settings->setIn(Parameters, "renderer", parameters.renderer);
    if (!parameters.dpi)
        return {};
    settings->setIn(Parameters, "custom_dpi", *parameters.dpi);
    return RegistryChange::dpi(*parameters.dpi);
}

}  // namespace

RegistryChange apply(const Manifest& manifest, bool is64Bit, BottleYaml* settings, QStringList* warnings) {
    const Manifest::Bottle& bottle = manifest.bottle;
    RegistryChange change = applyWindows(bottle.windows, is64Bit, settings, warnings)
                                .then(applyParameters(bottle.parameters, settings));
    for (auto it = bottle.dllOverrides.begin(); it != bottle.dllOverrides.end(); ++it) {
        settings->setOverride(it.key(), it.value());
        change = change.then(DllOverrides::registry(it.key(), it.value()));
    }
    for (auto it = bottle.fontReplacements.begin(); it != bottle.fontReplacements.end(); ++it) {
        settings->setFontReplacement(it.key(), it.value());
        change = change.then(RegistryChange::fontReplacement(it.key(), it.value()));
    }
    for (const Manifest::RegistryValue& value : bottle.registry)
        change = change.then(RegistryChange::value(value));
    return change;
}

void enterPrograms(const Manifest& manifest, const QString& path, BottleYaml* settings) {
    for (const Manifest::Program& program : manifest.programs) {
        if (!WindowsPath::isWindowsPath(program.path) ||
            !QFileInfo(WindowsPath::toUnix(path, program.path)).isFile())
            continue;
        const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        QString error;
        QJsonObject record = SetupManifest::recordOf(program);
        record.insert("id", id);
        record = Programs::completed(record, QDateTime::currentDateTime(), &error);
        if (error.isEmpty())
            settings->setProgram(id, record);
        else
            qWarning() << error;
    }
}

}  // namespace SetupSettings
