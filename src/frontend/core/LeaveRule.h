#pragma once

/// When the process may leave. Only the rule: ProcessEnd acts on it.
namespace LeaveRule {

/// What has ended: the occasion on which the process asks whether it may leave.
enum class Ended {
    LastWindow,
    Launch,
    SetUp,  ///< the attempt to install an application of the store
    Start,  ///< the handling of the process's own start, or of one that was handed over
    Work,   ///< pending work, or the script that sets up the environment
    User,   ///< has chosen to quit
};

struct Facts {
    bool hasRunner = false;         ///< a launch
    bool isSettingUp = false;       ///< an application
    bool hasVisibleWindow = false;  ///< not determined when one of the two above is true
    bool isHandlingStart = false;
    bool hasWaitingStarts = false;  ///< queued behind a start that asks the user something
    bool isService = false;         ///< waits for calls from the bus
    bool isScriptRunning = false;   ///< sets up the environment
    bool hasPendingWork = false;    ///< requested by the user, not yet done by the bottle service
    bool isOverdue = false;         ///< the pending work was waited for as long as allowed
    bool hasTransfer = false;       ///< a download, which is kept as a part if the user quits
};

enum class Verdict {
    Stay,
    LeaveLater,  ///< when the pending work is done, unless a window is shown or a start comes before
    Leave,
};

Verdict of(Ended what, const Facts& facts);

}  // namespace LeaveRule
