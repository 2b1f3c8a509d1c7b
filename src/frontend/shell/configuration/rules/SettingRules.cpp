#include "shell/configuration/rules/SettingRules.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

const QLatin1String Vulkan("vulkan");

QString reasonOf(KernelModule ntSync) {
    switch (ntSync) {
        case KernelModule::Missing:
            return QCoreApplication::translate("BasicPage",
                                               "The kernel of this computer does not have the module ntsync");
        case KernelModule::NoTool:
            return QCoreApplication::translate(
                "BasicPage", "The tool modinfo, which knows the modules of the kernel, is missing");
        default:
            return QCoreApplication::translate("BasicPage", "Looking for the module ntsync of the kernel");
    }
}

}  // namespace

bool SettingRules::canUseNtSync(const QString& runner) {
    static const QStringList runners{"lumora-ge-proton10"};
    return runners.contains(runner);
}

SettingRowStates SettingRules::rowStates(const SettingValues& values, KernelModule ntSync) {
    SettingRowStates states;
    const auto row = [&states](Setting setting) -> SettingRowState& { return states[size_t(setting)]; };
    const auto disable = [&row](Setting setting, const QString& reason) {
        row(setting).isEnabled = false;
        row(setting).reason = reason;
    };
    const QString renderer = values.text(Setting::Renderer);
    if (renderer != Vulkan)
        disable(Setting::DiscreteGpu,
                QCoreApplication::translate("BasicPage", "Only for the rendering method vulkan"));
    if (renderer != QLatin1String("gl"))
        disable(Setting::CpuRendering,
                QCoreApplication::translate("BasicPage", "Only for the rendering method opengl"));

    const QString runner = values.text(Setting::Runner);
    SettingRowState& memory = row(Setting::MemOptimized);
    if (runner == QLatin1String("lumora-wine6-stable")) {
        memory.isForcedOn = true;
        memory.isControlEnabled = false;
        memory.reason = QCoreApplication::translate("BasicPage", "Always on with this Wine version");
    }
    if (runner.contains(QLatin1String("proton")))
        disable(Setting::MemOptimized, QCoreApplication::translate("BasicPage", "Not for Proton"));

    if (!canUseNtSync(runner))
        disable(Setting::NtSync,
                QCoreApplication::translate("BasicPage", "Needs the Wine version lumora-ge-proton10"));
    else if (ntSync != KernelModule::Present)
        disable(Setting::NtSync, reasonOf(ntSync));
    return states;
}

bool SettingRules::usesGraphicsLayers(const SettingValues& values) {
    return !values.text(Setting::Dxvk).isEmpty() || !values.text(Setting::Vkd3d).isEmpty();
}

bool SettingRules::endsGraphicsLayers(Setting setting, const QVariant& value) {
    return setting == Setting::Renderer && value.toString() != Vulkan;
}

SettingValues SettingRules::withRendererOfLayers(const SettingValues& values) {
    SettingValues result = values;
    if (usesGraphicsLayers(values))
        result.set(Setting::Renderer, QString(Vulkan));
    return result;
}

SettingRules::Effect SettingRules::effectOf(const SettingValues& before, Setting setting,
                                            const QVariant& value) {
    Effect effect{before};
    effect.values.set(setting, value);
    const bool isGraphics = setting == Setting::Dxvk || setting == Setting::Vkd3d;
    if (endsGraphicsLayers(setting, value)) {
        effect.values.set(Setting::Dxvk, QString());
        effect.values.set(Setting::Vkd3d, QString());
    } else if (isGraphics && !value.toString().isEmpty() && before.text(Setting::Renderer) != Vulkan) {
        effect.values.set(Setting::Renderer, QString(Vulkan));
        effect.setsVulkan = true;
    }
    return effect;
}
