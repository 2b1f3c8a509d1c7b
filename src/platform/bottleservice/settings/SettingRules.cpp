#include "bottleservice/settings/SettingRules.h"

#include <QStringList>
#include <algorithm>

bool SettingRules::isRenderer(const QString& renderer) {
    return renderer == "gl" || renderer == "vulkan" || renderer == "gdi";
}

QString SettingRules::windowsVersion(const QString& code, bool is64Bit) {
    static const QStringList known = {"win11",   "win10", "win81",   "win8",    "win2008r2", "win7",
                                      "win2008", "vista", "win2003", "winxp64", "winxp",     "win2k",
                                      "winme",   "win98", "win95",   "nt40"};
    static const QStringList only32Bit = {"win2k", "winme", "win98", "win95", "nt40"};
    if (!known.contains(code) || (is64Bit && only32Bit.contains(code)))
        return {};
    return is64Bit && code == "winxp" ? QString("winxp64") : code;
}

bool SettingRules::isFontName(const QString& name) {
    return !name.trimmed().isEmpty() && name.size() <= 255 &&
           std::none_of(name.begin(), name.end(),
                        [](QChar c) { return c.category() == QChar::Other_Control; });
}
