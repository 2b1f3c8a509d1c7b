#include "launch/repair/FailureFacts.h"

#include "launch/repair/FailureSearch.h"
#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"

QStringList FailureFacts::missingComponents() const {
    QStringList missing;
    for (const FailureSign& sign : signs) {
        if (!sign.component.isEmpty() && !triedComponents.contains(sign.component))
            missing << sign.component;
    }
    missing.removeDuplicates();
    return missing;
}

void FailureFacts::addLog(const WineLogParser& log, int findings) {
    signs += FailureSearch::signs(log);
    crashed = crashed || (findings & LogCrash);
}
