#pragma once

#include <functional>

#include "shell/configuration/rules/SettingValues.h"

class QObject;
struct BusResult;

enum class SettingControl { Choice, Switch, Number, Component };

/// How a setting is shown and sent. Texts are sources of translations in the context "BasicPage".
struct SettingInfo {
    Setting setting;
    const char* objectName;
    SettingControl control;
    const char* label;
    const char* tip;   ///< below the label; may be empty
    const char* help;  ///< what the setting does, as a tool tip
    /// Sets the value in the bottle. The handler gets the end of the call, unless the context goes first.
    void (*send)(const QString& bottle, const QVariant& value, QObject* context,
                 const std::function<void(const BusResult&)>& handler);
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

}  // namespace SettingTable
