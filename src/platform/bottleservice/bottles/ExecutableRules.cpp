#include "bottleservice/bottles/ExecutableRules.h"

#include <QRegularExpression>

namespace {

bool matches(const char* pattern, const QString& text) {
    const QRegularExpression expression(
        pattern, QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(text).hasMatch();
}

const char NoProgram[] =
    "unin(s|stall)|remove |read ?me|help|manual|documentation|licen[cs]e|release notes|changelog|web "
    "?site|homepage|"
    "卸载|删除|帮助|说明|手册|许可|官网|网站|主页|反馈";

}  // namespace

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
