#pragma once

#include <QJsonObject>
#include <QString>

/// DLL overrides: which DLLs Wine loads, and from where (SettingRules has what they may be).
namespace DllOverrides {

/// Whether the variable can hold the name. Wine takes a name with a blank in it for two; such an override
/// must stand in the registry.
bool fitsVariable(const QString& name);

/// The value of WINEDLLOVERRIDES: "name=method" joined by ";". Invalid pairs are left out. Switches off
/// winemenubuilder unless the bottle says otherwise: programs and associations are read from the bottle, and
/// nothing reaches the desktop unasked.
QString variable(const QJsonObject& overrides);

}  // namespace DllOverrides
