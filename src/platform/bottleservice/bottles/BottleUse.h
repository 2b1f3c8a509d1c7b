#pragma once

#include <QString>
#include <optional>

/// What is known of a bottle that a launch has left behind. A fact without a value could not be found out.
struct BottleUse {
    std::optional<bool> isRunning;     ///< programs run in it; Wine's own services do not count
    std::optional<bool> isInstalling;  ///< an installation into it was begun and not ended
    std::optional<bool> hasPrograms;   ///< entries other than that of the set-up itself
    std::optional<bool> hasShortcuts;  ///< to programs, of whatever age
    std::optional<bool> hasFiles;      ///< that neither the template nor Wine has put there
    bool isShared = true;              ///< a public bottle

    /// Why the bottle stays, in English for the log and for developers. Empty when it may be deleted, which
    /// is only so when every fact is known.
    QString reasonToKeep() const;
};
