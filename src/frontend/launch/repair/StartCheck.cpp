#include "launch/repair/StartCheck.h"

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "launch/repair/Diagnosis.h"
#include "launch/repair/FailureFacts.h"
#include "launch/repair/ProgramAppFixer.h"
#include "launch/script/LauncherExit.h"
#include "launch/winelog/WineLogParser.h"

bool StartCheck::isFailure(const StartEnd& end, bool hasComponents) {
    if (end.isUp || end.isStopped)
        return false;
    const int exitCode = end.exitCode.value_or(0);
    return hasComponents || (exitCode != 0 && !LauncherExit::isEndedFromOutside(exitCode));
}

FailedStart StartCheck::check(const StartEnd& end) {
    const ProgramFixRecord lack = ProgramAppFixer(end.bottle, end.uuid, true).checkProgram();
    if (!isFailure(end, !lack.missingComponents.isEmpty()))
        return {};
    FailureFacts facts;
    facts.exitCode = end.exitCode.value_or(0);
    facts.isExitCodeKnown = end.exitCode.has_value();
    facts.components = lack.missingComponents;
    const QString log = ProgramAppFixer::logOf(BottlesConfig::instance()->get(end.bottle), end.uuid);
    WineLogParser parser;
    if (!log.isEmpty()) {
        const int findings = parser.parseFile(log);
        facts.addLog(parser, findings);
    }
    return {Diagnosis::of(facts).reason, lack.missingComponents};
}
