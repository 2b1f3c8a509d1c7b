#include "bottleservice/bottles/BottleUse.h"

QString BottleUse::reasonToKeep() const {
    if (isShared)
        return "others share it";
    const struct {
        const std::optional<bool>& fact;
        const char* reason;
        const char* doubt;
    } rows[] = {
        {isRunning, "programs run in it", "it is not known whether programs run in it"},
        {isInstalling, "something is being installed into it",
         "it is not known whether something is being installed into it"},
        {hasPrograms, "it has programs", "its programs are not known"},
        {hasShortcuts, "it has shortcuts", "its shortcuts are not known"},
        {hasFiles, "it has files of its own", "its files are not known"},
    };
    for (const auto& row : rows) {
        if (!row.fact || *row.fact)
            return row.fact ? row.reason : row.doubt;
    }
    return {};
}
