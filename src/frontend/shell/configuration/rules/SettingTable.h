#pragma once

#include "shell/configuration/rules/SettingValues.h"

enum class SettingControl { Choice, Switch, Number, Component };

/// How a setting is shown and sent. Texts are sources of translations in the context "BasicPage".
struct SettingInfo {
    Setting setting;
    const char* objectName;
    SettingControl control;
    const char* label;
    const char* tip;     ///< below the label; may be empty
    const char* help;    ///< what the setting does, as a tool tip
    const char* method;  ///< of the service: bottle and value are its arguments
};

namespace SettingTable {

const std::array<SettingInfo, size_t(SettingCount)>& all();
const SettingInfo& of(Setting setting);

/// Translated.
QString label(Setting setting);

/// The wire name of a component's kind; empty for another setting.
QString componentKind(Setting setting);
/// The setting of a kind as signals name it; false for an unknown one.
bool settingOfKind(const QString& kind, Setting* setting);

/// The arguments of the call that sets the value in the bottle. A component that is off is "-" on the wire.
QVariantList arguments(Setting setting, const QString& bottle, const QVariant& value);

}  // namespace SettingTable
