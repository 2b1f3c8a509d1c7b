#include "bottleservice/requests/SettingsRequests.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonDocument>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/Emulators.h"
#include "bottleservice/components/GraphicsLayer.h"
#include "bottleservice/jobs/ChangeSettingsJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"
#include "bottleservice/settings/DllOverrides.h"
#include "manifest/SettingRules.h"

namespace {

const char Overrides[] = "DLL_Overrides";
const char Fonts[] = "Font_Replacements";
const char Parameters[] = "Parameters";

/// DXVK and VKD3D draw with Vulkan only. Without the overrides Wine takes its own DLLs, whatever lies beside
/// them, so that this needs no installation.
void endGraphicsLayers(BottleYaml& settings) {
    for (const char* key : {"DXVK", "VKD3D"}) {
        if (settings.record()[QLatin1String(key)].toString().isEmpty())
            continue;
        for (const QString& dll : GraphicsLayer::knownDlls(key))
            settings.removeOverride(QFileInfo(dll).baseName());
        settings.set(key, QString());
    }
}

}  // namespace

SettingsRequests::SettingsRequests(BottleEngine* engine, QObject* parent)
    : QObject(parent), m_engine(engine) {}

void SettingsRequests::recover() {
    for (const QString& bottle : m_engine->bottles().store().names()) {
        QString error;
        const auto settings = m_engine->bottles().store().load(bottle, &error);
        if (!settings || settings->pendingRegistry().isEmpty())
            continue;
        qWarning() << "a change of the registry of" << BottleName::shown(bottle)
                   << "was interrupted; doing it now";
        change(
            bottle, [](BottleYaml&) {}, {}, [](const Answer&) {});
    }
}

bool SettingsRequests::refuse(bool wrong, const QString& bottle, const Reason& reason,
                              const Reply& reply) const {
    if (RequestChecks::refuseName(bottle, reply))
        return true;
    if (wrong)
        reply(Answer::failure(Answer::Fault::InvalidArgs, reason));
    return wrong;
}

bool SettingsRequests::refuseFont(const QString& font, const QString& bottle, const Reply& reply) const {
    return refuse(!SettingRules::isFontName(font), bottle,
                  Reason(Reason::BadFontName, {BottleName::shown(font)}), reply);
}

void SettingsRequests::change(const QString& bottle, std::function<void(BottleYaml&)> change,
                              const RegistryChange& registry, const Reply& reply) {
    m_engine->enqueue(bottle, std::make_unique<ChangeSettingsJob>(m_engine->jobBottle(bottle),
                                                                  std::move(change), registry, reply));
}

void SettingsRequests::setDpi(const QString& bottle, int dpi, const Reply& reply) {
    const bool wrong = dpi < SettingRules::MinimumDpi || dpi > SettingRules::MaximumDpi;
    if (refuse(wrong, bottle, QString("%1 is no DPI between 96 and 480.").arg(dpi), reply))
        return;
    change(
        bottle, [dpi](BottleYaml& settings) { settings.setIn(Parameters, "custom_dpi", dpi); },
        RegistryChange::dpi(dpi), reply);
}

void SettingsRequests::setSwitch(const QString& bottle, const char* parameter, bool on, const Reply& reply) {
    if (refuse(false, bottle, {}, reply))
        return;
    change(
        bottle, [parameter, on](BottleYaml& settings) { settings.setIn(Parameters, parameter, on); }, {},
        reply);
}

void SettingsRequests::setRenderer(const QString& bottle, const QString& renderer, const Reply& reply) {
    if (refuse(
            !SettingRules::isRenderer(renderer), bottle,
            QString("\"%1\" is no renderer; there are gl, vulkan and gdi.").arg(BottleName::shown(renderer)),
            reply))
        return;
    change(
        bottle,
        [renderer](BottleYaml& settings) {
            settings.setIn(Parameters, "renderer", renderer);
            if (renderer != QLatin1String("vulkan"))
                endGraphicsLayers(settings);
        },
        {}, reply);
}

void SettingsRequests::setWindowsVersion(const QString& bottle, const QString& code, const Reply& reply) {
    if (refuse(false, bottle, {}, reply))
        return;
    const bool is64Bit = QFileInfo::exists(m_engine->bottles().pathOf(bottle) + "/drive_c/windows/syswow64");
    const QString version = SettingRules::windowsVersion(code, is64Bit);
    if (refuse(
            version.isEmpty(), bottle,
            QString("\"%1\" is no Windows version that this bottle can have.").arg(BottleName::shown(code)),
            reply))
        return;
    change(
        bottle, [version](BottleYaml& settings) { settings.set("Windows", version); },
        RegistryChange::windowsVersion(version), reply);
}

void SettingsRequests::setEmulator(const QString& bottle, const QString& emulator, const Reply& reply) {
    if (refuse(!Emulators::describe(emulator)["installed"].toObject().contains(emulator), bottle,
               QString("There is no emulator \"%1\" on this machine.").arg(BottleName::shown(emulator)),
               reply))
        return;
    change(
        bottle, [emulator](BottleYaml& settings) { settings.set("Emulator", emulator); }, {}, reply);
}

Answer SettingsRequests::listDllOverrides(const QString& bottle) const {
    return listed(bottle, Overrides);
}

void SettingsRequests::updateDllOverride(const QString& bottle, const QString& dll, const QString& method,
                                         bool remove, const Reply& reply) {
    if (refuse(!SettingRules::isDllName(dll), bottle, Reason(Reason::BadDllName, {BottleName::shown(dll)}),
               reply) ||
        refuse(!remove && !SettingRules::isLoadMethod(method), bottle,
               Reason(Reason::BadLoadMethod, {BottleName::shown(method)}), reply))
        return;
    change(
        bottle,
        [dll, method, remove](BottleYaml& settings) {
            if (remove)
                settings.removeOverride(dll);
            else
                settings.setOverride(dll, method);
        },
        remove ? DllOverrides::registryWithout(dll) : DllOverrides::registry(dll, method), reply);
}

Answer SettingsRequests::listFontReplacements(const QString& bottle) const {
    return listed(bottle, Fonts);
}

void SettingsRequests::addFontReplacement(const QString& bottle, const QString& font,
                                          const QString& replacement, const Reply& reply) {
    if (refuseFont(font, bottle, reply) || refuseFont(replacement, bottle, reply))
        return;
    change(
        bottle, [font, replacement](BottleYaml& settings) { settings.setFontReplacement(font, replacement); },
        RegistryChange::fontReplacement(font, replacement), reply);
}

void SettingsRequests::removeFontReplacement(const QString& bottle, const QString& font, const Reply& reply) {
    if (refuseFont(font, bottle, reply))
        return;
    change(
        bottle, [font](BottleYaml& settings) { settings.removeFontReplacement(font); },
        RegistryChange::noFontReplacement(font), reply);
}

Answer SettingsRequests::listed(const QString& bottle, const char* key) const {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    return Answer::of(QString::fromUtf8(QJsonDocument(settings->record().value(QLatin1String(key)).toObject())
                                            .toJson(QJsonDocument::Compact)));
}
