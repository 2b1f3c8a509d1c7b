#include "bottleservice/bottles/ExecutableRules.h"

#include <QRegularExpression>

namespace {

bool matches(const char* pattern, const QString& text) {
    const QRegularExpression expression(
        pattern, QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(text).hasMatch();
}

const char Updater[] = "updat(e|er|or)|upgrade|autoup|liveup";
const char Helper[] =
    "^unin|^uninst|uninstall|^setup|install(er)?\\.exe$|^vc_?redist|^dotnet|^dxsetup|^oalinst|^ndp[0-9]|"
    "crash|"
    "bugreport|errorreport|feedback|^7z|helper|service|daemon|^elevat|notification|^cef|subprocess|renderer|"
    "^java|^python|^node\\.exe$|^ffmpeg|^aria2|^curl|^wget|^regsvr|^reg\\.exe$|repair|^diag|telemetry|proxy";
const char NoProgram[] =
    "unin(s|stall)|remove |read ?me|help|manual|documentation|licen[cs]e|release notes|changelog|web "
    "?site|homepage|"
    "卸载|删除|帮助|说明|手册|许可|官网|网站|主页|反馈";

}  // namespace

ExecutableRules::Kind ExecutableRules::kindOf(const QString& fileName) {
    if (matches(Updater, fileName))
        return Kind::Updater;
    return matches(Helper, fileName) ? Kind::Helper : Kind::Program;
}

bool ExecutableRules::isProgramShortcut(const QString& shortcutName, const QString& target) {
    const QString file = target.section('\\', -1);
    return matches("\\.(exe|bat|cmd|com|msi)$", file) && !matches(NoProgram, shortcutName) &&
           !matches(
               "^(unin|uninst|msiexec)|uninstall|^(explorer|iexplore|notepad|winhlp32|hh|rundll32)\\.exe$",
               file);
}

bool ExecutableRules::isOfWine(const QString& path) {
    return matches(
        "^c:\\\\(windows|program files( \\(x86\\))?\\\\(windows nt|internet explorer|windows media "
        "player))\\\\",
        path);
}
