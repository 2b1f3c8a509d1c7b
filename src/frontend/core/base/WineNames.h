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

/// A Proton runner, such as "ge-proton9".
inline bool isProton(const QString& runner) {
    return runner.contains(QLatin1String("-proton"));
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
