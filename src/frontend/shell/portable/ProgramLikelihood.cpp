#include "shell/portable/ProgramLikelihood.h"

#include <QRegularExpression>
#include <algorithm>

namespace {

constexpr int DoesNotRun = -2000;
constexpr int Helper = -1000;
constexpr int Graphical = 40;
constexpr int Icon = 30;
constexpr int SameName = 60;
constexpr int LikeName = 40;
constexpr int LikeVersionName = 25;
constexpr int Named = 10;
constexpr int Needs32Bit = -5;  // which not every Wine has
constexpr int Level = -15;
constexpr int MostForSize = 16;
constexpr qint64 SmallBytes = 16 * 1024;
constexpr int LeastLetters = 3;

bool matches(const char* pattern, const QString& text) {
    const QRegularExpression expression(
        pattern, QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(text).hasMatch();
}

const char HelperFile[] =
    "^unin|uninst|^setup|install(er)?\\.exe$|updat(e|er|or)|upgrade|autoup|liveup|^vc_?redist|^dotnet|"
    "^dxsetup|^dxwebsetup|^oalinst|^ndp[0-9]|crash|bugreport|errorreport|reporter|feedback|^7z|helper|"
    "service|daemon|^elevat|notification|^cef|subprocess|renderer|^java|^python|^node\\.exe$|^ffmpeg|"
    "^ffprobe|^aria2|^curl|^wget|^regsvr|^reg\\.exe$|repair|^diag|telemetry|proxy|config(uration)?\\.exe$|"
    "卸载|更新|升级|修复";
const char HelperName[] =
    "\\buninstall|\\bunins|\\bupdate[rs]?\\b|crash ?(report|handler|pad)|redistributable|\\bsetup\\b|"
    "bug ?report|卸载|更新程序|升级程序|崩溃";

/// Letters and figures only, without version, processor and words that archives add.
QString essence(const QString& name) {
    static const QRegularExpression noise(
        "(portable|windows|win(32|64)?|x(64|86)|(64|32)[- ]?bit|green|"
        "绿色|免安装|版|v?[0-9]+([._][0-9]+)+)",
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression mark("[^\\p{L}\\p{N}]", QRegularExpression::UseUnicodePropertiesOption);
    return name.toLower().remove(noise).remove(mark);
}

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

bool ProgramLikelihood::isHelper(const ProgramFacts& facts) {
    return matches(HelperFile, facts.fileName) ||
           std::any_of(facts.names.begin(), facts.names.end(),
                       [](const QString& name) { return matches(HelperName, name); });
}

int ProgramLikelihood::of(const ProgramFacts& facts) {
    const QString folder = essence(facts.folderName);
    const QString stem = essence(facts.fileName.section('.', 0, -2));
    int points = facts.depth * Level + forSize(facts.bytes);
    if (!stem.isEmpty() && stem == folder)
        points += SameName;
    else if (areAlike(stem, folder))
        points += LikeName;
    if (std::any_of(facts.names.begin(), facts.names.end(),
                    [&folder](const QString& name) { return areAlike(essence(name), folder); }))
        points += LikeVersionName;
    points += (facts.isGraphical ? Graphical : 0) + (facts.hasIcon ? Icon : 0) +
              (facts.names.isEmpty() ? 0 : Named);
    points += facts.is32BitOnly ? Needs32Bit : 0;
    return points + (facts.runsHere ? 0 : DoesNotRun) + (isHelper(facts) ? Helper : 0);
}
