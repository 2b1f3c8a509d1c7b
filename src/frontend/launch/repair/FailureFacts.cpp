#include "launch/repair/FailureFacts.h"

#include "launch/repair/FailurePatterns.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"

void FailureFacts::addLog(const WineLogParser& log, int findings) {
    signs += FailurePatterns::find(log);
    crashed = crashed || (findings & LogCrash);
}
