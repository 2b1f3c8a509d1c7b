#include "launch/repair/FailureFacts.h"

#include "launch/repair/FailureSearch.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"

void FailureFacts::addLog(const WineLogParser& log, int findings) {
    signs += FailureSearch::signs(log);
    crashed = crashed || (findings & LogCrash);
}
