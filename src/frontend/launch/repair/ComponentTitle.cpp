#include "launch/repair/ComponentTitle.h"

#include <QStringList>

namespace {

struct Family {
    const char* component;  ///< or a prefix of the name, followed by a version
    const char* title;      ///< %1 is the version
};

// A name must come before its own prefix.
constexpr Family Families[] = {
    {"vcredist2022", "Visual C++ 2015-2022"},
    {"vcredist2019", "Visual C++ 2015-2019"},
    {"vcredist6", "Visual C++ 6"},
    {"vcredist", "Visual C++ %1"},
    {"mfc42", "Visual C++ 6"},
    {"mfc40", "Visual C++ 4"},
    {"mfc70", "Visual C++ 2002"},
    {"dotnetcoredesktop3", ".NET Core 3.1"},
    {"dotnetcoredesktop", ".NET %1"},
    {"mono9", "Wine Mono"},
    {"gecko", "Wine Gecko"},
    {"vb6controls", "Visual Basic 6"},
    {"vbrun", "Visual Basic %1"},
    {"d3dx9", "DirectX 9"},
    {"d3dx10", "DirectX 10"},
    {"d3dx11", "DirectX 11"},
    {"d3dcsx", "DirectX 11"},
    {"d3dcompiler_47", "DirectX 11"},
    {"d3dcompiler_", "DirectX 9"},
    {"dxc", "DirectX 12"},
    {"d3drm", "DirectX 8"},
    {"dx8vb", "DirectX 8"},
    {"mdx", "Managed DirectX"},
    {"xinput", "DirectX (XInput)"},
    {"xaudio", "DirectX (XAudio2)"},
    {"xact", "DirectX (XACT)"},
    {"dinput", "DirectX (DirectInput)"},
    {"directmusic", "DirectX (DirectMusic)"},
    {"directplay", "DirectX (DirectPlay)"},
    {"directshow", "DirectX (DirectShow)"},
    {"dsdmo", "DirectX (DirectSound)"},
    {"dxdiagn", "DirectX"},
    {"xna40", "XNA Framework 4.0"},
    {"xna31", "XNA Framework 3.1"},
    {"physx", "PhysX"},
    {"openal", "OpenAL"},
    {"gfw", "Games for Windows LIVE"},
    {"glut", "GLUT"},
    {"msxml", "MSXML %1"},
    {"mdac28", "Data Access Components 2.8"},
    {"jet40", "Jet 4.0"},
    {"ace2010", "Access Database Engine 2010"},
    {"sqlncli", "SQL Server Native Client"},
    {"gdiplus", "GDI+"},
    {"riched20", "RichEdit"},
    {"mf", "Media Foundation"},
    {"wmp", "Windows Media Player %1"},
    {"ie8", "Internet Explorer 8"},
    {"webview2", "WebView2"},
    {"quicktime", "QuickTime"},
};

}  // namespace

QString componentTitle(const QString& component) {
    for (const Family& family : Families) {
        const QLatin1String name(family.component);
        const QString title = QLatin1String(family.title);
        if (component == name)
            return title;
        if (title.contains("%1") && component.startsWith(name))
            return title.arg(component.mid(name.size()));
    }
    if (component.startsWith("dotnet"))  // dotnet48, dotnet452: one digit per part of the version
        return ".NET Framework " + component.mid(6).split(QString(), Qt::SkipEmptyParts).join('.');
    return component;
}
