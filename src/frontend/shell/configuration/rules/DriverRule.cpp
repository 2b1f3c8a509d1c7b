#include "shell/configuration/rules/DriverRule.h"

#include "core/base/WineNames.h"

bool DriverRule::isConcerned(const QString& architecture, const QString& runner) {
    return architecture == QLatin1String("amd64") && WineNames::isGeProton(runner);
}

bool DriverRule::isFor32Bit(const QString& fileDescription) {
    return fileDescription.contains(QLatin1String("PE32 executable"));
}
