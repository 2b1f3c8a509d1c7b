#pragma once

#include <QString>
#include <optional>

/// The facts that decide whether a bottle may be deleted after a launch. A fact without a value is unknown
/// and keeps the bottle.
struct BottleUse {
    std::optional<bool> isRunning;     ///< programs run in it; Wine's own services do not count
    std::optional<bool> isInstalling;  ///< an installation into it was begun and not ended
    std::optional<bool> hasPrograms;   ///< entries other than that of the set-up itself
    std::optional<bool> hasShortcuts;  ///< to programs, of whatever age
    std::optional<bool> hasFiles;      ///< that neither the template nor Wine has put there
    bool isShared = true;              ///< a public bottle

    /// Why the bottle is kept, in English for the log and for developers. Empty when it may be deleted, which
    /// needs every fact to be known.
    QString reasonToKeep() const;
};
