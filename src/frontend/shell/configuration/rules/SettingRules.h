#pragma once

#include <array>

#include "probes/KernelModule.h"
#include "shell/configuration/rules/SettingValues.h"

/// What of a setting's row can be used.
struct SettingRowState {
    bool isEnabled = true;         ///< the row as a whole
    bool isControlEnabled = true;  ///< the control in it
    bool isForcedOn = false;       ///< the switch is shown as on, whatever the bottle says
    QString reason;                ///< why it can't be used, for the user

    bool canBeUsed() const { return isEnabled && isControlEnabled; }
    bool operator==(const SettingRowState& other) const {
        return isEnabled == other.isEnabled && isControlEnabled == other.isControlEnabled &&
               isForcedOn == other.isForcedOn && reason == other.reason;
    }
};

using SettingRowStates = std::array<SettingRowState, size_t(SettingCount)>;

/// Which rows of the basic page can be used, and what a change of one setting does to the others.
namespace SettingRules {

/// `ntSync` is the kernel's module of that name.
SettingRowStates rowStates(const SettingValues& values, KernelModule ntSync);

/// Whether the runner can use that module at all; only then it is worth looking for.
bool canUseNtSync(const QString& runner);

/// Whether the choice turns off dxvk and vkd3d, which the bottle does by itself when it is told the renderer.
bool endsGraphicsLayers(Setting setting, const QVariant& value);

/// Whether dxvk or vkd3d is on.
bool usesGraphicsLayers(const SettingValues& values);

/// The values with the renderer that dxvk or vkd3d draw with, if one of them is on.
SettingValues withRendererOfLayers(const SettingValues& values);

/// The values after the user has chosen one.
struct Effect {
    SettingValues values;
    /// The bottle has to be told to render with Vulkan, too.
    bool setsVulkan = false;
};
Effect effectOf(const SettingValues& before, Setting setting, const QVariant& value);

}  // namespace SettingRules
