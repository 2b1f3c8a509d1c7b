#include "core/base/Paths.h"

#include <QStandardPaths>

#include "core/base/BuildInfo.h"

namespace Paths {

QString prefix() {
    return QStringLiteral(CELLARIX_PREFIX);
}
QString infoFile() {
    return prefix() + "/info";
}
QString binDir() {
    return prefix() + "/files/bin";
}
QString libDir() {
    return prefix() + "/files/lib";
}
QString shareDir() {
    return prefix() + "/files/share/cellarix";
}
QString dataFile(const QString& name) {
    return shareDir() + (BuildInfo::isRelease() ? "/" : "/source/") + name;
}
QString launcherScript() {
    return shareDir() + "/service/launcher.py";
}
QString packagerScript() {
    return shareDir() + "/service/bottles_packager.py";
}
QString peVersionInfoScript() {
    return BuildInfo::isRelease() ? binDir() + "/pe_version_info.py"
                                  : shareDir() + "/tools/pe_version_info.py";
}
QString exeScannerScript() {
    return shareDir() + "/scripts/exe_scanner.py";
}
QString storeServer() {
    return binDir() + "/cellarix-store-server";
}
QString diecTool() {
    return BuildInfo::isRelease()
               ? shareDir() + "/diec/diec"
               : QStringLiteral(CELLARIX_BUILD_DIR) + "/../../3dparty/DIE-engine/diec/diec";
}
QString processWindowTool() {
    return BuildInfo::isRelease()
               ? shareDir() + "/tools/enum_process_window.exe"
               : QStringLiteral(CELLARIX_BUILD_DIR) + "/../../tools/enum_process_window.exe";
}
QString iconExtractorScript() {
    return shareDir() + "/scripts/icon_extractor.py";
}
QString translationsDir() {
    return shareDir() + (BuildInfo::isRelease() ? "/translations" : "/translations/build/translations");
}
QString iconsDir() {
    return prefix() + "/files/share/icons";
}
QString dbusServiceDir() {
    return prefix() + "/files/share/dbus-1/services";
}
QString imageCacheDir() {
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + "/cellarix-img-cache";
}
QString bottlesDataDir() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumora-wine-bottles";
}

}  // namespace Paths
