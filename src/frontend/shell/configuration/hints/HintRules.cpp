#include "shell/configuration/hints/HintRules.h"

#include "core/base/WineNames.h"
#include "launch/winelog/LogParseRule.h"

namespace {

const char VisualBasicRuntime[] = "vbrun";

QStringList limited(const QStringList& names) {
    QStringList kept;
    for (const QString& name : names) {
        if (kept.size() < HintRules::MostNames && name.size() <= HintRules::LongestName)
            kept.append(name);
    }
    return kept;
}

/// What the log names, and a Visual Basic runtime, which no log names.
QStringList missingComponents(const HintFacts& facts) {
    QStringList names = facts.missingComponents;
    const QString& runtime = facts.requiredComponent;
    if (runtime.startsWith(QLatin1String(VisualBasicRuntime)) && !names.contains(runtime) &&
        !facts.installedComponents.contains(runtime))
        names.append(runtime);
    return names;
}

/// Whether another Wine is worth a try: nothing says more, and the program has not come up or has crashed.
bool callsForOtherWine(const HintFacts& facts) {
    constexpr int Explained = LogMissingComponent | LogMissingFont | LogMissingMono;
    constexpr int Crashed = LogCrash | LogDebugSymbolError;
    return facts.runner != WineNames::stagingRunner() &&
           facts.knownRunners.contains(WineNames::stagingRunner()) && !(facts.findings & Explained) &&
           (!facts.hasLaunchResult || (facts.findings & Crashed));
}

}  // namespace

QVector<Hint> HintRules::of(const HintFacts& facts) {
    using Kind = Hint::Kind;
    const QStringList components = limited(missingComponents(facts));
    const QStringList fonts = limited(facts.missingFonts);
    QVector<Hint> hints;
    if (facts.isMonoMissing)
        hints.append({Kind::DotNetRuntime, {"dotnet48", "mono9"}});
    if (!fonts.isEmpty())
        hints.append({Kind::MissingFonts, fonts});
    if (!components.isEmpty())
        hints.append({Kind::MissingComponents, components});
    if (facts.isGame && !facts.hasDxvk)
        hints.append({Kind::GameGraphics, {}});
    if (facts.isConsole)
        hints.append({Kind::Console, {}});
    if (facts.isSteamRuntimeEnded)
        hints.append({Kind::SteamRuntimeEnded, {}});
    if (hints.isEmpty() && callsForOtherWine(facts))
        hints.append({facts.hasTranslators ? Kind::OtherWineOrTranslator : Kind::OtherWine, {}});
    if (facts.findings & LogMissingWinRT)
        hints.append({Kind::OlderWindows, {}});
    return hints;
}

bool HintRules::isSteamRuntimeBroken(const HintFacts& facts) {
    return WineNames::isGeProton(facts.runner) && (facts.findings & LogBrokenSteamRuntime);
}
