#pragma once

#include <QStringList>
#include <QVector>

/// What is known about a debugging run that has ended. Names come from logs and are untrusted.
struct HintFacts {
    int findings = 0;  ///< of the log, as WineLogParser combines them
    bool isMonoMissing = false;
    QStringList missingFonts;
    QStringList missingComponents;
    QString requiredComponent;  ///< the component that contains the program's runtime; may be empty
    QStringList installedComponents;
    bool isGame = false;
    bool isConsole = false;
    QString runner;  ///< the Wine version that the window shows
    bool hasDxvk = false;
    QStringList knownRunners;  ///< installed, or offered for installation
    bool hasTranslators = false;
    bool hasLaunchResult = false;  ///< the program has shown a window, or the wait for one has ended
    bool isSteamRuntimeEnded = false;
};

/// One thing that the user may try.
struct Hint {
    enum class Kind {
        DotNetRuntime,
        MissingFonts,
        MissingComponents,
        GameGraphics,
        Console,
        SteamRuntimeEnded,
        OtherWine,
        OtherWineOrTranslator,
        OlderWindows
    };

    Kind kind;
    QStringList names;  ///< of fonts or components; untrusted

    bool operator==(const Hint& other) const { return kind == other.kind && names == other.names; }
};

namespace HintRules {

constexpr int MostNames = 200;    ///< in one hint
constexpr int LongestName = 255;  ///< characters; no file has a longer one

/// In the order of display. A program can print any number of names, of any length: only those count that are
/// within the limits above.
QVector<Hint> of(const HintFacts& facts);

/// Whether the runtime around a Proton runner is broken, so that it has to be ended before of() is asked.
bool isSteamRuntimeBroken(const HintFacts& facts);

}  // namespace HintRules
