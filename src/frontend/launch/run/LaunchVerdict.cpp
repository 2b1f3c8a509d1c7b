#include "launch/run/LaunchVerdict.h"

#include "launch/LaunchText.h"

namespace {

LaunchVerdict offer(bool canWeFix, bool isSuccessed, const QString& message = {}) {
    return {LaunchVerdict::Offer, message, canWeFix, isSuccessed};
}

LaunchVerdict result(const LaunchFacts& facts, bool isSuccessed) {
    if (facts.isFailed())
        return {LaunchVerdict::Failed, LaunchVerdict::nothingFixedMessage(facts.hasTriedRepair), false,
                isSuccessed};
    return {LaunchVerdict::Succeeded, LaunchText::tr("No any fixing applied, but seems app not crashed"),
            false, isSuccessed};
}

}  // namespace

LaunchVerdict LaunchVerdict::of(const LaunchFacts& facts) {
    const bool isFixable = facts.hasComponents || facts.hasFonts;
    const bool isSuccessed = !facts.isFailed() && facts.hasFonts && !facts.hasComponents;
    if (isFixable && facts.autoFix)
        return {Repair, {}, false, false};
    if (isFixable)
        return offer(facts.isFirstRun || facts.hasComponents, isSuccessed);
    if (facts.hasOtherRepair && facts.isFailed())
        return offer(true, false);
    if (facts.autoFix || !facts.isFailed() || !facts.stagingKnown)
        return result(facts, isSuccessed);
    if (!facts.isFirstRun)
        return offer(false, isSuccessed);
    return offer(
        true, isSuccessed,
        LaunchText::tr("Application is not running as expected, try to using lumora-wine-staging and "
                       "relaunch"));
}

QString LaunchVerdict::endMessage(int exitCode, const LaunchFacts& facts) {
    // Whole texts, since other languages put these words in another order.
    const char* text = QT_TRANSLATE_NOOP("ExeFileExecutor", "Seems application has finished, exit code: %1");
    if (facts.crashed)
        text = QT_TRANSLATE_NOOP("ExeFileExecutor",
                                 "Seems application has finished, exit code: %1, and crashed");
    else if (facts.neverCameUp())
        text = QT_TRANSLATE_NOOP("ExeFileExecutor",
                                 "Seems application has finished, exit code: %1, and app not been launched");
    return LaunchText::tr(text).arg(exitCode);
}

QString LaunchVerdict::nothingFixedMessage(bool hasTriedRepair) {
    if (hasTriedRepair)
        return LaunchText::tr("No any fixing applied, launch failed", "what was repaired did not help");
    return LaunchText::tr("No any fixing applied, launch failed");
}
