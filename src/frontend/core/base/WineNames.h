#pragma once

#include <QString>

/// Names that the application and the bottle service agree on.
namespace WineNames {

/// The runner of new bottles, and the fallback when another can't be installed.
inline QString defaultRunner() {
    return QStringLiteral("lumora-wine10-stable");
}

/// The runner that is tried next for a program that does not run.
inline QString stagingRunner() {
    return QStringLiteral("lumora-wine-staging");
}

/// The beginnings of the variables that name a program and its Wine prefix in a process environment.
inline QByteArray programUuidPrefix() {
    return QByteArrayLiteral("_CXB_WINE_PROGRAM_UUID=");
}
inline QByteArray winePrefixPrefix() {
    return QByteArrayLiteral("WINEPREFIX=");
}

/// Bottles shared by several programs; they are never repaired by hand.
inline bool isPublicBottle(const QString& bottle) {
    return bottle.startsWith(QLatin1String("public/"));
}

/// A Proton of any origin, such as "lumora-proton9" or "ge-proton9".
inline bool isProton(const QString& runner) {
    return runner.contains(QLatin1String("-proton"));
}

/// A Proton that has to be set up before its first use and needs 32-bit drivers for 32-bit programs, such as
/// "ge-proton9". Also of a version as windows show it.
inline bool isGeProton(const QString& runner) {
    return runner.startsWith(QLatin1String("ge-proton")) ||
           runner.startsWith(QLatin1String("lumora-ge-proton"));
}

/// The debug channels that a launch logs when the user has not chosen others: those that a diagnosis reads.
inline QString launchDebugChannels() {
    return QStringLiteral("err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,warn+file");
}

/// Whether a program started this process when it crashed. The crash handler that programs built on a browser
/// start each time is none.
inline bool isCrashReporter(const QString& processName) {
    const auto has = [&](const char* part) {
        return processName.contains(QLatin1String(part), Qt::CaseInsensitive);
    };
    return (has("bugreport") || has("crash") || has("winedbg")) && !has("crashpad");
}

}  // namespace WineNames
