#include "store/install/SetupPackages.h"

#include "backend/DesktopUtils.h"
#include "core/base/WineNames.h"
#include "probes/Packages.h"

bool SetupPackages::canBeHad(const QString& name) const {
    return runnersSupported.contains(name) || (hasAppStore && available.contains(name));
}

SetupPackages::State SetupPackages::of(const QString& name) const {
    if (installed.contains(name) || runnersInstalled.contains(name))
        return State::Installed;
    if (canBeHad(name))
        return State::Missing;
    return runnersInstalled.contains(WineNames::defaultRunner()) ? State::Replaced : State::Missing;
}

QString SetupPackages::toInstall(const QString& name) const {
    return canBeHad(name) || !runnersSupported.contains(WineNames::defaultRunner())
               ? name
               : WineNames::defaultRunner();
}

SetupPackages SetupPackages::ask(const QStringList& names) {
    SetupPackages packages;
    packages.hasAppStore = DesktopUtils::hasAppStore();
    for (const QString& name : names) {
        if (installedPackages({name}).contains(name))  // a pattern is no name
            packages.installed += name;
        else if (packageAvailable(name))
            packages.available += name;
    }
    return packages;
}
