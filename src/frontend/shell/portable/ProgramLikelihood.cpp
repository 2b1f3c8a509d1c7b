#include "shell/portable/ProgramLikelihood.h"

#include <algorithm>

#include "fenk/system/ExecutableKind.h"

namespace {

constexpr int DoesNotRun = -2000;
constexpr int Helper = -1000;
constexpr int Graphical = 40;
constexpr int Icon = 30;
constexpr int SameName = 60;
constexpr int LikeName = 40;
constexpr int LikeVersionName = 25;
constexpr int Named = 10;
constexpr int Settings = -70;
constexpr int Needs32Bit = -5;  // which not every Wine has
constexpr int Level = -15;
constexpr int MostForSize = 16;
constexpr qint64 SmallBytes = 16 * 1024;
constexpr int LeastLetters = 3;

bool areAlike(const QString& one, const QString& other) {
    return std::min(one.size(), other.size()) >= LeastLetters && (one.contains(other) || other.contains(one));
}

int forSize(qint64 bytes) {
    int points = 0;
    for (qint64 rest = bytes / SmallBytes; rest > 0 && points < MostForSize; rest /= 2)
        ++points;
    return points;
}

}  // namespace

int ProgramLikelihood::of(const ProgramFacts& facts) {
    const QString folder = Fenk::programNameEssence(facts.folderName);
    const QString stem = Fenk::programNameEssence(facts.fileName.section('.', 0, -2));
    int points = facts.depth * Level + forSize(facts.bytes);
    if (!stem.isEmpty() && stem == folder)
        points += SameName;
    else if (areAlike(stem, folder))
        points += LikeName;
    if (std::any_of(facts.names.begin(), facts.names.end(), [&folder](const QString& name) {
            return areAlike(Fenk::programNameEssence(name), folder);
        }))
        points += LikeVersionName;
    points += (facts.isGraphical ? Graphical : 0) + (facts.hasIcon ? Icon : 0) +
              (facts.names.isEmpty() ? 0 : Named);
    points += facts.is32BitOnly ? Needs32Bit : 0;
    if (stem.endsWith("config") || stem.endsWith("configuration"))
        points += Settings;
    const bool isHelper =
        Fenk::executableKind(facts.fileName, facts.folderName) != Fenk::ExecutableKind::Program ||
        Fenk::describesHelper(facts.names);
    return points + (facts.runsHere ? 0 : DoesNotRun) + (isHelper ? Helper : 0);
}
