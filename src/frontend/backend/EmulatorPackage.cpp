#include "backend/EmulatorPackage.h"

#include <QDebug>
#include <QMap>

#include "backend/BottlesConfig.h"
#include "backend/InstalledPackages.h"

EmulatorPackage::PackageQueries EmulatorPackage::packageManager() {
    return {[](const QString& pattern) { return InstalledPackages::installed({pattern}); },
            [](const QString& package) { return InstalledPackages::version(package); }};
}

QString EmulatorPackage::knownPackage(const QString& emulator) {
    static const QMap<QString, QString> packages = {{"box86", "lumora-box86"},
                                                    {"box64", "lumora-box64"},
                                                    {"exagear", "exagear-core-x64a64"},
                                                    {"phybin", "cn.com.phytium.phybin.zol"}};
    return packages.value(emulator);
}

QString EmulatorPackage::describe(const QString& bottle, const PackageQueries& queries) {
    return describeEmulator(BottlesConfig::instance()->getEmulators(bottle).usingName, queries);
}

QString EmulatorPackage::describeEmulator(const QString& emulator, const PackageQueries& queries) {
    if (emulator.isEmpty())
        return {};
    QString package = knownPackage(emulator);
    if (package.isEmpty()) {
        qWarning().noquote().nospace() << "unknown emulator: " << emulator << ", search via dpkg";
        package = queries.installed(QString("*%1*").arg(emulator)).value(0);
        qWarning().noquote() << "choose package name" << package << "for emulator" << emulator;
    }
    return package.isEmpty() ? QString() : QString("%1 %2").arg(package, queries.version(package));
}
