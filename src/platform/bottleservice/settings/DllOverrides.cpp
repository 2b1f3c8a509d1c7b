#include "bottleservice/settings/DllOverrides.h"

#include <algorithm>

#include "manifest/SettingRules.h"

namespace {

const QLatin1String MenuBuilder("winemenubuilder.exe");

bool fitsVariable(const QString& name) {
    return std::none_of(name.begin(), name.end(), [](QChar c) { return c.isSpace(); });
}

}  // namespace

RegistryChange DllOverrides::registry(const QString& dll, const QString& method) {
    return fitsVariable(dll) ? RegistryChange() : RegistryChange::dllOverride(dll, method);
}

RegistryChange DllOverrides::registryWithout(const QString& dll) {
    return fitsVariable(dll) ? RegistryChange() : RegistryChange::noDllOverride(dll);
}

QStringList DllOverrides::pairs(const QJsonObject& overrides) {
    QStringList pairs;
    for (auto it = overrides.begin(); it != overrides.end(); ++it) {
        const QString method = it.value().toString();
        if (SettingRules::isDllName(it.key()) && fitsVariable(it.key()) && SettingRules::isLoadMethod(method))
            pairs += it.key() + '=' + method;
    }
    return pairs;
}

QString DllOverrides::variable(const QJsonObject& overrides) {
    QStringList parts;
    if (!overrides.contains(MenuBuilder))
        parts += QString(MenuBuilder) + '=';
    parts += pairs(overrides);
    return parts.join(';');
}
