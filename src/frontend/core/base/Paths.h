#pragma once

#include <QString>

/// Paths of the installed files and of the user's data. Only this file knows the installation prefix.
namespace Paths {

QString prefix();    ///< "/opt/apps/cellarix" unless configured otherwise
QString infoFile();  ///< JSON with the installed "version"
QString binDir();    ///< files/bin
QString libDir();    ///< files/lib
QString shareDir();  ///< files/share/cellarix
QString dataFile(
    const QString& name);  ///< a catalogue file beside the share directory; source/ in development builds
QString launcherScript();  ///< service/launcher.py
QString packagerScript();  ///< service/bottles_packager.py
QString peVersionInfoScript();  ///< pe_version_info.py
QString exeScannerScript();     ///< scripts/exe_scanner.py
QString storeServer();          ///< cellarix-store-server, which answers when no other store is configured
QString diecTool();             ///< the scanner of signatures
QString processWindowTool();    ///< enum_process_window.exe, which runs inside bottles
QString iconExtractorScript();  ///< scripts/icon_extractor.py
QString translationsDir();      ///< compiled translations
QString iconsDir();             ///< base of the hicolor theme of the program's own icons
QString dbusServiceDir();       ///< D-Bus activation files

QString imageCacheDir();   ///< <CacheLocation>/cellarix-img-cache
QString bottlesDataDir();  ///< <GenericDataLocation>/lumora-wine-bottles

}  // namespace Paths
