#include "manifest/SettingRules.h"

#include <QRegularExpression>
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

bool SettingRules::isDllName(const QString& name) {
    // No character that could end the entry, and no directory.
    static const QRegularExpression pattern("\\A\\*?[^;=,\"*/\\\\:[:cntrl:]]+\\z");
    return name.size() <= 255 && name == name.trimmed() && pattern.match(name).hasMatch();
}

bool SettingRules::isLoadMethod(const QString& method) {
    static const QStringList methods = {"n", "b", "n,b", "b,n", ""};
    return methods.contains(method);
}

QString SettingRules::loadMethod(const QString& text) {
    QStringList letters;
    for (const QString& word : text.split(',', Qt::SkipEmptyParts))
        letters += word.trimmed().left(1).toLower();
    const QString method = letters.join(',');
    return isLoadMethod(method) ? method : text;
}

QString SettingRules::moduleName(const QString& dll) {
    const QLatin1String suffix(".dll");
    return dll.endsWith(suffix, Qt::CaseInsensitive) ? dll.chopped(suffix.size()) : dll;
}

bool SettingRules::isVariableName(const QString& name) {
    return !name.isEmpty() && !name.contains('=') && !name.contains(QChar(0));
}

bool SettingRules::isSharedVariable(const QString& name) {
    static const QRegularExpression own(
        "\\A(LD_|PYTHON|PERL|RUBY|BASH|QT_|GTK_|GDK_PIXBUF|GIO_|GCONV|DBUS_|XDG_|_CXB_|CELLARIX_|"
        "VK_|__EGL_|__GLX_|EGL_|GALLIUM_PIPE|GBM_|LIBGL_DRIVERS|LIBVA_|VDPAU_|OCL_|OPENCL_|GST_|ALSA_|SPA_|"
        "PIPEWIRE_|SDL_DYNAMIC|SDL_\\w*_DYNAMIC|LADSPA_|OPENSSL_|SSL_|CURL_|GLIBC_|"
        "(PATH|HOME|SHELL|ENV|IFS|USER|LOGNAME|TMPDIR|LOCPATH|DISPLAY|XAUTHORITY|WAYLAND_DISPLAY|WINEPREFIX|"
        "WINELOADER|WINESERVER|WINEDLLPATH|WINEARCH|(HTTP|HTTPS|FTP|ALL|NO)_PROXY)\\z)",
        QRegularExpression::CaseInsensitiveOption);
    return isVariableName(name) && !own.match(name).hasMatch();
}

bool SettingRules::isPlainName(const QString& name) {
    static const QRegularExpression pattern("\\A[A-Za-z0-9_][A-Za-z0-9_.+() -]{0,199}\\z");
    return pattern.match(name).hasMatch();
}
