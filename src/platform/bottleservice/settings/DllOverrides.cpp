#include "bottleservice/settings/DllOverrides.h"

#include <QStringList>
#include <algorithm>

#include "manifest/SettingRules.h"

namespace {

const QLatin1String MenuBuilder("winemenubuilder.exe");

}  // namespace

bool DllOverrides::fitsVariable(const QString& name) {
    return std::none_of(name.begin(), name.end(), [](QChar c) { return c.isSpace(); });
}

QString DllOverrides::variable(const QJsonObject& overrides) {
    QStringList parts;
    if (!overrides.contains(MenuBuilder))
        parts += QString(MenuBuilder) + '=';
    for (auto it = overrides.begin(); it != overrides.end(); ++it) {
        const QString method = it.value().toString();
        if (SettingRules::isDllName(it.key()) && fitsVariable(it.key()) && SettingRules::isLoadMethod(method))
            parts += it.key() + '=' + method;
    }
    return parts.join(';');
}
