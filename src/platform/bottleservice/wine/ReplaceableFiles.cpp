#include "bottleservice/wine/ReplaceableFiles.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

struct Row {
    const char* pattern;  ///< of a file name in lower case, with * and ?
    const char* reason;
};

const Row Table[] = {
    {"msvc*", "Visual C++ redistributables"},
    {"vcruntime*", "Visual C++ redistributables"},
    {"concrt*", "Visual C++ redistributables"},
    {"vcomp*", "Visual C++ redistributables"},
    {"vccorlib*", "Visual C++ redistributables"},
    {"vcamp*", "Visual C++ redistributables"},
    {"ucrtbase*", "Visual C++ redistributables"},
    {"api-ms-win-*", "Visual C++ redistributables"},
    {"mfc*", "Visual C++ redistributables"},
    {"atl*", "Visual C++ redistributables"},
    {"crtdll.dll", "Visual C++ redistributables"},
    {"msvbvm*", "Visual Basic runtimes"},
    {"vb*", "Visual Basic runtimes and Windows Script"},
    {"*.ocx", "controls that installers bring and register"},
    {"ole*", "Visual Basic and office installers"},
    {"asycfilt*", "Visual Basic and office installers"},
    {"comcat*", "Visual Basic and office installers"},
    {"stdole*", "Visual Basic and office installers"},
    {"ctl3d32*", "controls that old installers bring"},
    {"comctl32*", "controls that old installers bring"},
    {"comdlg32*", "controls that old installers bring"},
    {"riched*", "rich text"},
    {"msftedit*", "rich text"},
    {"msls31*", "rich text"},
    {"usp10*", "rich text"},
    {"msxml*", "XML parsers"},
    {"xmllite*", "XML parsers"},
    {"d3dx*", "DirectX redistributable"},
    {"d3dcompiler*", "DirectX redistributable"},
    {"d3drm*", "DirectX redistributable"},
    {"d3dxof*", "DirectX redistributable"},
    {"x3daudio*", "DirectX redistributable"},
    {"xaudio*", "DirectX redistributable"},
    {"xapofx*", "DirectX redistributable"},
    {"xact*", "DirectX redistributable"},
    {"xinput*", "DirectX redistributable"},
    {"dinput*", "DirectX redistributable"},
    {"dm*", "DirectX redistributable: DirectMusic"},
    {"dsound*", "DirectX redistributable"},
    {"dsdmo*", "DirectX redistributable"},
    {"dswave*", "DirectX redistributable"},
    {"dp*", "DirectX redistributable: DirectPlay"},
    {"quartz*", "DirectShow"},
    {"devenum*", "DirectShow"},
    {"qcap*", "DirectShow"},
    {"qdvd*", "DirectShow"},
    {"qasf*", "DirectShow"},
    {"qedit*", "DirectShow"},
    {"amstream*", "DirectShow"},
    {"dx*", "DXVK, DirectX for Visual Basic"},
    {"d3d*", "DXVK, VKD3D and native Direct3D"},
    {"opengl32*", "native drivers' stand-ins"},
    {"opencl*", "native drivers' stand-ins"},
    {"psapi*", "old redistributables"},
    {"shfolder*", "old redistributables"},
    {"wintrust*", "old redistributables"},
    {"crypt32*", "old redistributables"},
    {"msacm32*", "old redistributables"},
    {"avifil32*", "old redistributables"},
    {"mapi32*", "old redistributables"},
    {"version*", "old redistributables"},
    {"vulkan-1*", "native loaders"},
    {"gdiplus*", "GDI+"},
    {"mscor*", ".NET Framework"},
    {"fusion*", ".NET Framework"},
    {"diasymreader*", ".NET Framework"},
    {"msado*", "data access components"},
    {"msda*", "data access components"},
    {"odbc*", "data access components"},
    {"mtxdm*", "data access components"},
    {"sqloledb*", "data access components"},
    {"jscript*", "Windows Script"},
    {"scrrun*", "Windows Script"},
    {"scrobj*", "Windows Script"},
    {"wsh*", "Windows Script"},
    {"dispex*", "Windows Script"},
    {"wscript*", "Windows Script"},
    {"cscript*", "Windows Script"},
    {"ie*", "Internet Explorer"},
    {"mshtml*", "Internet Explorer"},
    {"urlmon*", "Internet Explorer"},
    {"wininet*", "Internet Explorer"},
    {"winhttp*", "Internet Explorer"},
    {"shdoc*", "Internet Explorer"},
    {"shlwapi*", "Internet Explorer"},
    {"browseui*", "Internet Explorer"},
    {"jsproxy*", "Internet Explorer"},
    {"inseng*", "Internet Explorer"},
    {"hlink*", "Internet Explorer"},
    {"hh*", "HTML help"},
    {"itss*", "HTML help"},
    {"itircl*", "HTML help"},
    {"msi*", "Windows Installer"},
    {"wm*", "Windows Media"},
    {"mf*", "Media Foundation"},
    {"windowscodecs*", "imaging components"},
    {"photometadatahandler*", "imaging components"},
    {"wbem*", "management instrumentation"},
    {"dbghelp*", "debugging tools"},
    {"dbgeng*", "debugging tools"},
    {"imagehlp*", "debugging tools"},
    {"mspatch*", "updaters"},
    {"qmgr*", "updaters"},
    {"cabinet*", "updaters"},
    {"advpack*", "updaters"},
    {"setupapi*", "updaters"},
    {"difxapi*", "driver installers"},
    {"sapi*", "speech"},
    {"iccvid*", "codecs"},
    {"msvidc32*", "codecs"},
    {"msrle32*", "codecs"},
    {"*.ax", "codecs"},
    {"*.acm", "codecs"},
    {"atmlib*", "fonts"},
    {"uiautomation*", "accessibility"},
    {"oleacc*", "accessibility"},
    {"*.ttf", "fonts"},
    {"*.ttc", "fonts"},
    {"*.fon", "fonts"},
    {"unicows*", "programs for Windows 98"},
    {"wing32*", "programs for Windows 3.1"},
    {"*.ini", "settings that programs write"},
    {"*.inf", "settings that programs write"},
    {"*.sys", "drivers that installers bring"},
    {"*.nls", "small, and read by path"},
    {"*.manifest", "side-by-side assemblies are written by installers"},
};

QRegularExpression pattern() {
    QStringList parts;
    for (const Row& row : Table)
        parts += QRegularExpression::wildcardToRegularExpression(row.pattern);
    return QRegularExpression(parts.join('|'));
}

}  // namespace

bool ReplaceableFiles::contains(const QString& path) {
    static const QRegularExpression names = pattern();
    static const QStringList linked = {"drive_c/windows/system32/", "drive_c/windows/syswow64/"};
    const QString lower = path.toLower();
    const QString name = lower.section('/', -1);
    const bool inSystem = lower.startsWith(linked[0]) || lower.startsWith(linked[1]);
    return !inSystem || names.match(name).hasMatch();
}
