#include "launch/winelog/DialogTextRule.h"

bool DialogTextRule::match(const QString& line) {
    text.clear();
    if (line.contains(Drawn))
        text = line;
    return !text.isEmpty();
}

LogParseResult DialogTextRule::result(const QString&) {
    if (text.isEmpty())
        return {};
    if (m_runtime.match(text).hasMatch())
        return {LogMissingComponent, "vcredist2022"};
    if (!text.contains("was not found") && !m_request.match(text).hasMatch())
        return {};
    // A name must come before its own prefix.
    static const std::pair<const char*, const char*> frameworks[] = {{".NET Framework 3.5", "dotnet35"},
                                                                     {".NET Framework 4.0", "dotnet40"},
                                                                     {".NET Framework 4.5.2", "dotnet452"},
                                                                     {".NET Framework 4.5", "dotnet45"},
                                                                     {".NET Framework", "dotnet48"}};
    for (const auto& [name, component] : frameworks) {
        if (text.contains(QLatin1String(name), Qt::CaseInsensitive))
            return {LogMissingComponent, component};
    }
    return {};
}
