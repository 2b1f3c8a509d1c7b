#include "launch/repair/FailurePatterns.h"

#include "launch/winelog/PrintedLines.h"

namespace {

struct Row {
    Failure failure;
    FailurePattern::Source source;
    const char* text;
    const char* detail = "";
    const char* component = "";
};

constexpr auto Logged = FailurePattern::Logged;
constexpr auto Said = FailurePattern::Said;

#define NAMED(names) "(?i)\\b(" names ")"
#define ANTI_CHEAT                                                                                     \
    NAMED(                                                                                             \
        "EasyAntiCheat|BEDaisy|BEService|BattlEye|vgk|XIGNCODE3?|xhunter1|nProtect|GameGuard|GameMon|" \
        "npptnt2|PunkBuster|PnkBstrK|FACEIT|mhyprot\\d?|ACE-BASE|AntiCheatExpert|TesSafe|TenProtect|"  \
        "EAAntiCheat")
#define COPY_PROTECTION                                                                                \
    NAMED(                                                                                             \
        "secdrv|SafeDisc|SecuROM|StarForce|sfdrv\\d+|prodrv\\d+|sfhlp\\d+|Hardlock|aksfridge|akshasp|" \
        "HASP|Sentinel|TAGES|atksgt|lirsgt|Denuvo|VMProtect|Themida|CodeMeter|Senselock")

constexpr Row Rows[] = {
    {Failure::NoDisplay, Logged, ":winediag:nodrv_CreateWindow "},
    {Failure::NoDisplay, Logged, "Can't open display: "},
    {Failure::DiskFull, Logged, "No space left on device"},
    {Failure::DiskFull, Said, "not enough space on"},
    {Failure::DiskFull, Said, "not enough disk space"},
    {Failure::DiskFull, Said, "\u78c1\u76d8\u7a7a\u95f4\u4e0d\u8db3"},
    {Failure::NotOwner, Logged, "is not owned by you"},
    {Failure::ServerMismatch, Logged, "wine client error:", "version mismatch (\\d+/\\d+)"},
    {Failure::DamagedBottle, Logged, "could not load ",
     "could not load (?:\\S+\\\\)?(\\w+\\.\\w+)\"?, status c000"},
    {Failure::DamagedBottle, Logged, "wine: failed to open ", "system32\\\\+([\\w.-]+)\""},
    {Failure::DamagedBottle, Logged, ":module:import_dll ",
     "(?i)import_dll Library "
     "((?:kernel32|kernelbase|ntdll|user32|gdi32|win32u|advapi32|sechost|shell32|shlwapi|"
     "ole32|combase|rpcrt4|ws2_32|msvcrt|comctl32|comdlg32|imm32|setupapi|version|winmm)\\.dll) .*not found"},
    {Failure::TooManyFiles, Logged, "Too many open files"},
    {Failure::Needs32Bit, Logged, "wine: failed to open ", "syswow64\\\\"},
    {Failure::Needs32Bit, Logged, "could not exec the wine loader"},
    {Failure::Needs32Bit, Logged, "installation, it cannot "},
    {Failure::BadProgram, Logged, "Bad EXE format"},
    {Failure::BadProgram, Logged, "file probably truncated"},
    {Failure::BadProgram, Logged, "no application associated with the specified file"},
    {Failure::BadProgram, Logged, "LdrInitializeThunk ", "failed, status c000007b"},
    {Failure::BadProgram, Said, "not a valid win32 application"},
    {Failure::OutOfMemory, Logged, "Cannot allocate memory"},
    {Failure::OutOfMemory, Said, "out of memory"},
    {Failure::OutOfMemory, Said, "\u5185\u5b58\u4e0d\u8db3"},
    {Failure::AntiCheat, Logged, ":ntoskrnl:", ANTI_CHEAT},
    {Failure::AntiCheat, Logged, ":service:", ANTI_CHEAT},
    {Failure::AntiCheat, Logged, ":process:NtCreateUserProcess ",
     "image L\".*\\\\" ANTI_CHEAT "[^\\\\]*\" cmdline"},
    {Failure::AntiCheat, Logged, ":module:", ANTI_CHEAT},
    {Failure::AntiCheat, Said, "", ANTI_CHEAT},
    {Failure::CopyProtection, Logged, ":ntoskrnl:", COPY_PROTECTION},
    {Failure::CopyProtection, Logged, ":service:", COPY_PROTECTION},
    {Failure::CopyProtection, Said, "a debugger has been found running in your system"},
    {Failure::CopyProtection, Said, "insert the ", "\\b(cd|dvd|disc)\\b"},
    {Failure::CopyProtection, Said, "", "\\b(dongle|hasp|securom|starforce|codemeter)\\b"},
    {Failure::CopyProtection, Said, "", "(\u52a0\u5bc6\u9501|\u52a0\u5bc6\u72d7)"},
    {Failure::KernelDriver, Logged, "failed to create driver ", "driver L\".*?(\\w+)\""},
    {Failure::KernelDriver, Logged, ":ntoskrnl:", "(\\w+\\.sys)\\b"},
    {Failure::MissingDll, Logged, ":module:import_dll ",
     "(?i)import_dll Library (.+) \\(which is needed by .*not found"},
    {Failure::MissingDll, Said, " was not found", "([\\w.+-]+\\.(?:dll|ocx))\\b"},
    {Failure::MissingDll, Said, "", "(?:\u627e\u4e0d\u5230|\u4e22\u5931) ?([\\w.+-]+\\.(?:dll|ocx))"},
    {Failure::MissingDll, Said, "one of its dependencies not correctly registered",
     "([\\w.+-]+\\.(?:dll|ocx))"},
    {Failure::MissingEntryPoint, Said, "could not be located in the dynamic link library",
     "library (?:.*\\\\)?([\\w+-]+\\.\\w+)"},
    {Failure::MissingEntryPoint, Logged, "LdrInitializeThunk ", "failed, status c0000139"},
    {Failure::SideBySide, Logged, "Could not find dependent assembly ", "L\"(Microsoft\\.VC80\\.[\\w.]+)\"",
     "vcredist2005"},
    {Failure::SideBySide, Logged, "Could not find dependent assembly ", "L\"(Microsoft\\.VC90\\.[\\w.]+)\"",
     "vcredist2008"},
    {Failure::SideBySide, Logged, "Could not find dependent assembly ", "L\"([\\w.-]+)\""},
    {Failure::SideBySide, Said, "side-by-side configuration is incorrect"},
    {Failure::MissingMono, Logged, "Wine Mono is not installed", "", "mono9"},
    {Failure::MissingDotNetFramework, Logged, "Could not load file or assembly",
     "'(?:PresentationFramework|PresentationCore|WindowsBase)\\b", "dotnet48"},
    {Failure::MissingDotNetFramework, Said, ".net framework",
     "(?:requires|install|\u9700\u8981|\u5b89\u88c5).*\\.net framework(?: v?(\\d[.\\d]*))?"},
    {Failure::MissingDotNet, Logged, ":eventlog:ReportEventW ",
     "(?:App host version: |Framework: 'Microsoft\\.\\w+\\.App', version ')(\\d+)"},
    {Failure::MissingDotNet, Said, "to run this application, you must install .net"},
    {Failure::MissingJava, Said, "java runtime environment"},
    {Failure::MissingJava, Said, "", "(?:could not find|requires|no) (?:java|jre)\\b"},
    {Failure::MissingGecko, Logged, "Failed to init Gecko", "", "gecko"},
    {Failure::MissingWebView2, Said, "webview2", "", "webview2"},
    {Failure::MissingWinRT, Logged, ":combase:RoGetActivationFactory Failed to find library for L\"",
     "L\"([\\w.]+)\""},
    {Failure::NoVulkan, Logged, "Failed to load libvulkan"},
    {Failure::NoVulkan, Logged, "wine_vkCreateInstance Failed to create instance"},
    {Failure::NoVulkan, Logged, "Failed to create Vulkan instance"},
    {Failure::NoVulkan, Logged, "No adapters found. Please check your device filter"},
    {Failure::NoVulkan, Said, "",
     "vulkan.*(?:not (?:supported|found|available)|required|fail|\u4e0d\u652f\u6301)"},
    {Failure::NoDirect3D12, Logged, ":d3d12:", "(?:F|f)ailed to create"},
    {Failure::NoDirect3D12, Said, "",
     "(?:directx|dx|d3d|direct3d) ?12.*(?:not|fail|required|\u4e0d\u652f\u6301)"},
    {Failure::NoOpenGL, Logged, "couldn't initialize OpenGL"},
    {Failure::NoOpenGL, Logged, "Failed to load libGL"},
    {Failure::NoOpenGL, Logged, "No OpenGL version found"},
    {Failure::NoOpenGL, Logged, "Failed to find a suitable pixel format"},
    {Failure::NoOpenGL, Said, "", "opengl.*(?:not|fail|required|unable|\u4e0d\u652f\u6301)"},
    {Failure::NoOpenGL, Said, "", "(?:fail|unable|could not|cannot).*(?:direct3d|d3d|graphics device)"},
    {Failure::WindowsVersion, Said, "", "requires (?:microsoft )?windows ([\\w.]+)"},
    {Failure::WindowsVersion, Said, "", "\u9700\u8981 ?windows ?([\\w.]+)"},
    {Failure::WindowsVersion, Said, "this version of windows"},
    {Failure::WindowsVersion, Said, "newer version of windows"},
    {Failure::NeedsAdministrator, Said, "",
     "administrat(?:or|ive) (?:rights|privileges)|as (?:an )?administrator|\u7ba1\u7406\u5458"},
    {Failure::AlreadyRunning, Said, "already running"},
    {Failure::AlreadyRunning, Said, "another instance"},
    {Failure::AlreadyRunning, Said, "", "\u5df2\u7ecf?\u5728?\u8fd0\u884c"},
    {Failure::Msi, Logged, ":msi:", "(?:Execution halted, action .* returned|invalid Return Code) (\\d+)"},
    {Failure::Msi, Said, "", "\\b(?:error|code|\u9519\u8bef)\\D{0,12}(16[0-5]\\d|1722)\\b"},
    {Failure::Msi, Said, "installation package could not be opened", "(?:could not be )(opened)"},
    {Failure::Updater, Said, "",
     "(?:update (?:has )?failed|(?:failed|unable) to (?:check for )?update|\u66f4\u65b0\u5931\u8d25)"},
    {Failure::Offline, Said, "",
     "(?:no internet connection|(?:could not|unable to|cannot|failed to) "
     "connect|\u65e0\u6cd5\u8fde\u63a5|\u7f51\u7edc\u8fde\u63a5\u5931\u8d25)"},
    {Failure::UnimplementedFunction, Logged, "unimplemented function ",
     "unimplemented function (\\S+?\\.(?:dll|exe|drv|ocx|sys))\\."},
    {Failure::Crash, Logged, CrashPrinted, "wine: Unhandled (.+?)(?: on | at address| in thread)"},
    {Failure::Crash, Logged, ":seh:NtRaiseException Unhandled exception code ", "code ([0-9a-f]+)"},
    {Failure::ManagedException, Logged, "",
     "(?i)unhandled exception:\\s*(?:\\r?\\n)?((?:\\w+\\.)+\\w*Exception)"},
    {Failure::SetupFailed, Logged, "err:setupapi:"},
    {Failure::MissingDatabase, Logged, ":msado15:recordset_supporterrorinfo_", "", "mdac28"},
    {Failure::MissingDatabase, Said, "microsoft.ace.oledb", "", "ace2010"},
    {Failure::MissingDatabase, Said, "microsoft.jet.oledb", "", "jet40"},
    {Failure::MissingDatabase, Said, "provider cannot be found", "", "mdac28"},
    {Failure::MissingCodec, Logged, "GStreamer doesn't support"},
    {Failure::MissingCodec, Logged, ":winegstreamer:", "(?:fail|missing|not found|Could not)"},
    {Failure::MissingCodec, Said, "codec"},
    {Failure::NoEncryption, Logged, "failed to load libgnutls"},
    {Failure::NoFreeType, Logged, "cannot find the FreeType font library"},
    {Failure::BrokenRuntime, Logged, "python3: error while loading shared libraries: "},
    {Failure::Locked, Said, "being used by another process"},
    {Failure::Locked, Said, "\u53e6\u4e00\u4e2a\u7a0b\u5e8f\u6b63\u5728\u4f7f\u7528"},
    {Failure::AccessDenied, Said, "", "(?:access (?:is )?denied|permission denied|\u62d2\u7edd\u8bbf\u95ee)"},
    {Failure::NetworkPath, Said, "", "(?:network (?:path|name|location)|\u7f51\u7edc\u8def\u5f84)"},
    {Failure::MissingFlash, Logged, "class {d27cdb6e-ae6d-11cf-96b8-444553540000} not registered"},
    {Failure::MissingClass, Logged, " not registered", "class (\\{[0-9a-f-]{36}\\}) not registered"},
    {Failure::Hang, Logged, "wait timed out in thread"},
};

}  // namespace

const QVector<FailurePattern>& failurePatterns() {
    static const QVector<FailurePattern> patterns = [] {
        QVector<FailurePattern> list;
        for (const Row& row : Rows)
            list.append({row.failure, row.source, QString::fromUtf8(row.text),
                         QRegularExpression(QString::fromUtf8(row.detail)),
                         QString::fromLatin1(row.component)});
        return list;
    }();
    return patterns;
}
