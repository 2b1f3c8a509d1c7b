#include "store/install/SetupPackages.h"

#include "core/base/WineNames.h"
#include "probes/Packages.h"

SetupPackages::State SetupPackages::of(const QString& name) const {
    if (installed.contains(name) || runnersInstalled.contains(name))
        return State::Installed;
    if (available.contains(name) || runnersSupported.contains(name))
        return State::Missing;
    return runnersInstalled.contains(WineNames::defaultRunner()) ? State::Replaced : State::Missing;
}

QString SetupPackages::toInstall(const QString& name) const {
    const bool canBeHad = available.contains(name) || runnersSupported.contains(name);
    return canBeHad || !runnersSupported.contains(WineNames::defaultRunner()) ? name
                                                                              : WineNames::defaultRunner();
}

SetupPackages SetupPackages::ask(const QStringList& names) {
    SetupPackages packages;
    for (const QString& name : names) {
        if (installedPackages({name}).contains(name))  // a pattern is no name
            packages.installed += name;
        else if (packageAvailable(name))
            packages.available += name;
    }
    return packages;
}
