#pragma once

/// When the process may leave. Only the rule: the application object collects the facts and acts.
namespace LeaveRule {

/// What has come to its end, so that the question arises.
enum class Ended {
    LastWindow,
    Launch,
    Start,  ///< the handling of the process's own start, or of one that was handed over
    Work,   ///< pending work, or the script that sets up the environment
    User,   ///< has chosen to quit
};

struct Facts {
    bool hasRunner = false;         ///< a launch
    bool isSettingUp = false;       ///< an application
    bool hasVisibleWindow = false;  ///< looked for only when the two above are false
    bool isHandlingStart = false;
    bool hasWaitingStarts = false;  ///< behind one that asks the user something
    bool isService = false;         ///< waits for calls from the bus
    bool isScriptRunning = false;   ///< sets up the environment
    bool hasPendingWork = false;    ///< asked for, and not yet done by the bottle service
    bool isOverdue = false;         ///< the pending work has been waited for long enough
};

enum class Verdict {
    Stay,
    LeaveLater,  ///< when the pending work is done, unless a window is shown or a start comes before
    Leave,
};

Verdict of(Ended what, const Facts& facts);

}  // namespace LeaveRule
