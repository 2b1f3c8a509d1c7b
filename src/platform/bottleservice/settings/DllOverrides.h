#pragma once

#include <QJsonObject>
#include <QStringList>

#include "bottleservice/settings/RegistryChange.h"

/// DLL overrides: which DLLs Wine loads, and from where (SettingRules has what they may be).
namespace DllOverrides {

/// The change of the registry that an override needs; mostly none. The variable cannot hold a name with a
/// blank, which Wine takes for two names; such an override must stand in the registry.
RegistryChange registry(const QString& dll, const QString& method);
RegistryChange registryWithout(const QString& dll);

/// "name=method" for each override that the variable can hold. Invalid ones are left out.
QStringList pairs(const QJsonObject& overrides);

/// The value of WINEDLLOVERRIDES: the pairs, joined by ";". Switches off
/// winemenubuilder unless the bottle says otherwise: programs and associations are read from the bottle, and
/// nothing reaches the desktop unasked.
QString variable(const QJsonObject& overrides);

}  // namespace DllOverrides
