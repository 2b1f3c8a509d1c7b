#pragma once

#include "launch/winelog/LogParseRule.h"

/// Finds fixed substrings; each maps to one finding.
class CommonRule final : public LogParseRule {
public:
    static constexpr char NoMono[] = "Wine Mono is not installed";
    static constexpr char NoSymbol[] = "dbghelp:elf_search_auxv can't find symbol in module";
    static constexpr char NoWinRT[] =
        "err:combase:RoGetActivationFactory Failed to find library for L\"Windows.";
    static constexpr char NoGecko[] =
        "err:mshtml:create_document_object Failed to init Gecko, returning CLASS_E_CLASSNOTAVAILABLE";
    static constexpr char SetupApi[] = "err:setupapi:";
    static constexpr char NoLibraries[] = "python3: error while loading shared libraries: ";
    static constexpr char Debugger[] = "seh:start_debugger Starting debugger";

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    LogParseResult current;
};
