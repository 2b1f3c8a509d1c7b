#include "core/LeaveRule.h"

namespace {

bool isInUse(const LeaveRule::Facts& facts) {
    return facts.hasRunner || facts.isSettingUp || facts.hasVisibleWindow || facts.isHandlingStart ||
           facts.hasWaitingStarts;
}

}  // namespace

LeaveRule::Verdict LeaveRule::of(Ended what, const Facts& facts) {
    if (what != Ended::User && isInUse(facts))
        return Verdict::Stay;
    // The last window, launch or set-up also ends a process that waits for the bus.
    if ((what == Ended::Start || what == Ended::Work) && (facts.isService || facts.isScriptRunning))
        return Verdict::Stay;
    const bool isWaitedFor =
        (facts.hasPendingWork && !facts.isOverdue) || (facts.hasTransfer && what != Ended::User);
    return isWaitedFor ? Verdict::LeaveLater : Verdict::Leave;
}
