#include "launch/winelog/CommonRule.h"

#include <QMap>

bool CommonRule::match(const QString& line) {
    // If several keys match, the first one in alphabetical order wins.
    static const QMap<QString, LogParseResult> findings = {
        {"Wine Mono is not installed", {LogMissingMono, {}}},
        {"dbghelp:elf_search_auxv can't find symbol in module", {LogDebugSymbolError, {}}},
        {"err:combase:RoGetActivationFactory Failed to find library for L\"Windows.", {LogMissingWinRT, {}}},
        {"err:mshtml:create_document_object Failed to init Gecko, returning CLASS_E_CLASSNOTAVAILABLE",
         {LogMissingComponent, "gecko"}},
        {"err:setupapi:", {LogSetupApiError, {}}},
        {"fixme:msado15:recordset_supporterrorinfo_InterfaceSupportsErrorInfo",
         {LogMissingComponent, "jet40"}},
        {"python3: error while loading shared libraries: ", {LogBrokenSteamRuntime, {}}},
        {"seh:start_debugger Starting debugger", {LogCrash, {}}},
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
