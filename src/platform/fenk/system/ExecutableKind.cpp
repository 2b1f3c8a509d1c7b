#include "fenk/system/ExecutableKind.h"

#include <QRegularExpression>
#include <algorithm>

namespace Fenk {

namespace {

bool matches(const char* pattern, const QString& text) {
    const QRegularExpression expression(
        pattern, QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(text).hasMatch();
}

const char Updater[] = "updat(e|er|or)|upgrade|autoup|liveup|更新|升级";
const char Helper[] =
    "^unin|uninst|卸载|^setup|install(er)?\\.exe$|^vc_?redist|^dotnet|^dx(web)?setup|^oalinst|^ndp[0-9]|"
    "^7z|^elevat|^cef|^java|^python|^node\\.exe$|^ffmpeg|^ffprobe|^aria2|^curl|^wget|^regsvr|^reg\\.exe$|"
    "^diag";
const char HelperWord[] =
    "crash|bugreport|errorreport|reporter|feedback|helper|service|daemon|notification|subprocess|renderer|"
    "repair|telemetry|proxy|修复";
const char HelperDescription[] =
    "\\buninstall|\\bunins|\\bupdate[rs]?\\b|crash ?(report|handler|pad)|redistributable|\\bsetup\\b|"
    "bug ?report|卸载|更新程序|升级程序|崩溃";

}  // namespace

ExecutableKind executableKind(const QString& fileName, const QString& folderName) {
    const bool isHelper = matches(Helper, fileName);
    const QString folder = programNameEssence(folderName);
    if (!isHelper && !folder.isEmpty() && folder == programNameEssence(fileName.section('.', 0, -2)))
        return ExecutableKind::Program;
    if (matches(Updater, fileName))
        return ExecutableKind::Updater;
    return isHelper || matches(HelperWord, fileName) ? ExecutableKind::Helper : ExecutableKind::Program;
}

bool describesHelper(const QStringList& names) {
    return std::any_of(names.begin(), names.end(),
                       [](const QString& name) { return matches(HelperDescription, name); });
}

QString programNameEssence(const QString& name) {
    static const QRegularExpression noise(
        "(portable|windows|win(32|64)?|x(64|86)|(64|32)[- ]?bit|green|"
        "绿色|免安装|版|v?[0-9]+([._][0-9]+)+)",
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression mark("[^\\p{L}\\p{N}]", QRegularExpression::UseUnicodePropertiesOption);
    return name.toLower().remove(noise).remove(mark);
}

}  // namespace Fenk
