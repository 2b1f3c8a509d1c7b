#include "launch/winelog/CommonRule.h"

#include <QMap>

#include "launch/winelog/MissingODBCRule.h"

bool CommonRule::match(const QString& line) {
    // If several keys match, the first one in alphabetical order wins.
    static const QMap<QString, LogParseResult> findings = {
        {NoMono, {LogMissingMono, {}}},
        {NoSymbol, {LogDebugSymbolError, {}}},
        {NoWinRT, {LogMissingWinRT, {}}},
        {NoGecko, {LogMissingComponent, "gecko"}},
        {SetupApi, {LogSetupApiError, {}}},
        {MissingODBCRule::Database, {LogMissingComponent, "jet40"}},
        {NoLibraries, {LogBrokenSteamRuntime, {}}},
        {Debugger, {LogCrash, {}}},
    };
    current = {};
    for (auto finding = findings.begin(); finding != findings.end(); ++finding) {
        if (line.contains(finding.key())) {
            current = finding.value();
            return true;
        }
    }
    return false;
}

LogParseResult CommonRule::result(const QString&) {
    return current;
}
