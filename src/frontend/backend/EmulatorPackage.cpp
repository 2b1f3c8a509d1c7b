#include "backend/EmulatorPackage.h"

#include <QDebug>
#include <QMap>

#include "backend/BottlesConfig.h"
#include "probes/Packages.h"

EmulatorPackage::PackageSource EmulatorPackage::packageManager() {
    return {[](const QString& pattern) { return installedPackages({pattern}); }, packageVersion};
}

QString EmulatorPackage::knownPackage(const QString& emulator) {
    static const QMap<QString, QString> known = {{"box86", "lumora-box86"},
                                                 {"box64", "lumora-box64"},
                                                 {"exagear", "exagear-core-x64a64"},
                                                 {"phybin", "cn.com.phytium.phybin.zol"}};
    return known.value(emulator);
}

QString EmulatorPackage::describe(const QString& bottle, const PackageSource& packages) {
    return describeEmulator(BottlesConfig::instance()->getEmulators(bottle).usingName, packages);
}

QString EmulatorPackage::describeEmulator(const QString& emulator, const PackageSource& packages) {
    if (emulator.isEmpty())
        return {};
    QString package = knownPackage(emulator);
    if (package.isEmpty()) {
        qWarning().noquote().nospace() << "unknown emulator: " << emulator << ", search via dpkg";
        package = packages.installed(QString("*%1*").arg(emulator)).value(0);
        qWarning().noquote() << "choose package name" << package << "for emulator" << emulator;
    }
    return package.isEmpty() ? QString() : QString("%1 %2").arg(package, packages.version(package));
}
