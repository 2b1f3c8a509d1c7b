#include "launch/repair/FailureReason.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>

#include "launch/repair/ComponentTitle.h"

namespace {

struct Words {
    Failure failure;
    const char* unnamed;  ///< for a sign without a detail; null where every sign has one
    const char* named;    ///< %1 is the detail; null where it is not told
    const char* advice;
};

#define TEXT(text) QT_TRANSLATE_NOOP("Diagnosis", text)

constexpr char AnotherWine[] = TEXT("Another version of Wine may run it.");

constexpr Words Table[] = {
    {Failure::NoDisplay, TEXT("It found no display to show a window on."), nullptr,
     TEXT("Start it from a desktop session.")},
    {Failure::DiskFull, TEXT("The disk is full."), nullptr, TEXT("Make room and start it again.")},
    {Failure::NotOwner, TEXT("Its bottle belongs to another user."), nullptr,
     TEXT("Start it as that user, without sudo.")},
    {Failure::ServerMismatch, TEXT("Another version of Wine is still running in its bottle."), nullptr,
     TEXT("End the programs of this bottle and start it again.")},
    {Failure::DamagedBottle, TEXT("Windows files of its bottle are missing or damaged."),
     TEXT("The bottle is damaged: %1 of Windows cannot be loaded."),
     TEXT("Open the file in a new bottle.")},
    {Failure::TooManyFiles, TEXT("It needs more open files than this system allows."), nullptr,
     TEXT("Raise the limit of open files (ulimit -n).")},
    {Failure::Needs32Bit, TEXT("A part of it is a 32-bit program, which this Wine cannot run."), nullptr,
     TEXT("Install 32-bit Wine (the package wine32).")},
    {Failure::BadProgram, TEXT("Its file is damaged or made for another kind of computer."), nullptr,
     TEXT("Download it once more.")},
    {Failure::OutOfMemory, TEXT("It ran out of memory."), nullptr,
     TEXT("Close other programs and start it again.")},
    {Failure::AntiCheat, nullptr,
     TEXT("It is guarded by an anti-cheat system (%1), which does not accept Wine."),
     TEXT("Only its maker can change that.")},
    {Failure::CopyProtection, TEXT("Its copy protection does not accept Wine or misses its disc or dongle."),
     TEXT("Its copy protection (%1) does not accept Wine or misses its disc or dongle."),
     TEXT("Insert the disc or the dongle, or ask the maker for a version without.")},
    {Failure::KernelDriver, nullptr, TEXT("It needs the Windows driver %1, and Wine cannot load drivers."),
     TEXT("Look for a version that needs no driver.")},
    {Failure::MissingDll, nullptr, TEXT("It needs %1, which is missing."),
     TEXT("Put that file beside the program, or install the program anew.")},
    {Failure::MissingEntryPoint, TEXT("One of its DLLs has another version than it expects."),
     TEXT("It needs another version of %1."), TEXT("Install the program anew.")},
    {Failure::SideBySide, TEXT("A runtime that its manifest names is missing."),
     TEXT("It needs the runtime %1, which its manifest names."), TEXT("Install the program anew.")},
    {Failure::MissingMono, TEXT("It needs .NET."), nullptr, TEXT("Install Wine Mono into its bottle.")},
    {Failure::MissingDotNetFramework, TEXT("It needs .NET Framework."), TEXT("It needs .NET Framework %1."),
     TEXT("Install it into its bottle.")},
    {Failure::MissingDotNet, TEXT("It needs the .NET runtime."), TEXT("It needs the .NET %1 runtime."),
     TEXT("Install it into its bottle.")},
    {Failure::MissingJava, TEXT("It needs Java for Windows."), nullptr,
     TEXT("Install a Java runtime for Windows into its bottle.")},
    {Failure::MissingGecko, TEXT("It shows web pages and needs Wine Gecko for them."), nullptr,
     TEXT("Install it into its bottle.")},
    {Failure::MissingWebView2, TEXT("It needs the WebView2 runtime."), nullptr,
     TEXT("Install it into its bottle.")},
    {Failure::MissingWinRT, nullptr, TEXT("It needs a part of Windows that this Wine lacks (%1)."),
     AnotherWine},
    {Failure::NoVulkan, TEXT("It needs Vulkan, and this system has no driver for it."), nullptr,
     TEXT("Install the Vulkan driver of your graphics card.")},
    {Failure::NoDirect3D12, TEXT("It needs Direct3D 12, which does not work here."), nullptr,
     TEXT("Install the Vulkan driver of your graphics card, or let the program use Direct3D 11.")},
    {Failure::NoOpenGL, TEXT("It needs 3D graphics, and OpenGL does not work on this system."), nullptr,
     TEXT("Install the driver of your graphics card.")},
    {Failure::WindowsVersion, TEXT("It asks for another version of Windows."),
     TEXT("It asks for Windows %1."), AnotherWine},
    {Failure::NeedsAdministrator, TEXT("It asks for administrator rights that it does not find."), nullptr,
     AnotherWine},
    {Failure::AlreadyRunning, TEXT("It says that it is already running."), nullptr,
     TEXT("End the other one, or all programs of its bottle, and start it again.")},
    {Failure::Updater, TEXT("Its updater failed."), nullptr,
     TEXT("Download the newest version from its maker and install that.")},
    {Failure::Offline, TEXT("It did not reach its server."), nullptr,
     TEXT("Check the network and start it again.")},
    {Failure::UnimplementedFunction, TEXT("It calls a function that this Wine lacks."),
     TEXT("It calls a function of %1 that this Wine lacks."), AnotherWine},
    {Failure::ManagedException, nullptr, TEXT("It ended with a .NET error that it does not handle (%1)."),
     TEXT("It may need Microsoft's .NET Framework.")},
    {Failure::SetupFailed, TEXT("Its installation failed."), nullptr,
     TEXT("Start it again; where it asks, leave out drivers and services.")},
    {Failure::MissingDatabase, TEXT("It needs a database engine of Microsoft's."), nullptr,
     TEXT("Install it into its bottle.")},
    {Failure::MissingCodec, TEXT("It plays video or sound for which this system has no decoder."), nullptr,
     TEXT("Install the GStreamer plugins (good, bad, ugly, libav).")},
    {Failure::NoEncryption, TEXT("It needs secure connections, and Wine misses libgnutls for them."), nullptr,
     TEXT("Install the package libgnutls30.")},
    {Failure::NoFreeType, TEXT("Wine cannot draw text: FreeType is missing."), nullptr,
     TEXT("Install the package libfreetype6.")},
    {Failure::BrokenRuntime, TEXT("The runtime around its Proton runner is broken."), nullptr,
     AnotherWine},
    {Failure::Locked, TEXT("A file that it needs is in use by another program."), nullptr,
     TEXT("End the other programs of its bottle and start it again.")},
    {Failure::AccessDenied, TEXT("It was not allowed to open a file."), nullptr,
     TEXT("Move it to a folder that you may write to.")},
    {Failure::NetworkPath, TEXT("It looks for something on a network share that is not there."), nullptr,
     TEXT("Mount the share and open the program from there.")},
    {Failure::MissingFlash, TEXT("It needs Flash Player, which is not made any more."), nullptr,
     TEXT("Ask its maker for a newer version.")},
    {Failure::MissingClass, nullptr, TEXT("It needs a COM class that is not registered (%1)."),
     TEXT("Install the program anew, with all its parts.")},
    {Failure::Hang, TEXT("It hangs: its threads wait for each other."), nullptr, AnotherWine},
};

struct Numbered {
    quint32 number;
    const char* text;
    const char* advice = nullptr;
};

constexpr Numbered MsiErrors[] = {
    {1601, TEXT("Windows Installer could not be started.")},
    {1602, TEXT("The installation was cancelled."), TEXT("Start it again.")},
    {1603, TEXT("The installation failed with a serious error (1603)."),
     TEXT("View Logs may name the step that failed.")},
    {1605, TEXT("It wants to change a program that is not installed (1605)."),
     TEXT("Install the full version first.")},
    {1612, TEXT("The installer does not find its source files (1612)."), TEXT("Keep all its files together.")},
    {1618, TEXT("Another installation is still running (1618)."), TEXT("Wait for its end and start this one again.")},
    {1619, TEXT("The installer package cannot be opened (1619)."), TEXT("Download it once more.")},
    {1620, TEXT("The installer package is damaged (1620)."), TEXT("Download it once more.")},
    {1622, TEXT("The installer could not write its log (1622)."), TEXT("Make room on the disk and start it again.")},
    {1625, TEXT("A policy forbids the installation (1625).")},
    {1632, TEXT("The folder for temporary files is full or missing (1632)."), TEXT("Make room and start it again.")},
    {1633, TEXT("The installer is made for another kind of computer (1633)."),
     TEXT("Get the version for 64-bit or 32-bit Windows.")},
    {1638, TEXT("Another version is installed already (1638)."), TEXT("Remove that one first.")},
    {1639, TEXT("The installer was started with wrong arguments (1639).")},
    {1641, TEXT("The installer wants Windows to restart (1641)."), TEXT("Start the program: that is not needed here.")},
    {1722, TEXT("A step of the installation failed (1722)."), TEXT("Start it again; leave out what is optional.")},
};

constexpr Numbered Crashes[] = {
    {0x80000003, TEXT("It stopped itself at a check that failed (80000003).")},
    {0xc0000005, TEXT("It crashed on memory that it may not use (c0000005).")},
    {0xc000001d, TEXT("It crashed on an instruction that this processor does not know (c000001d)."),
     TEXT("Look for a version for older processors.")},
    {0xc0000017, TEXT("It ran out of memory (c0000017)."), TEXT("Close other programs and start it again.")},
    {0xc0000094, TEXT("It crashed on a division by zero (c0000094).")},
    {0xc0000096, TEXT("It tried what only drivers may do (c0000096), as copy protections do.")},
    {0xc00000fd, TEXT("It crashed because its stack was full (c00000fd).")},
    {0xc0000135, TEXT("One of its DLLs is missing (c0000135)."), TEXT("Install the program anew.")},
    {0xc0000139, TEXT("One of its DLLs has another version than it expects (c0000139)."),
     TEXT("Install the program anew.")},
    {0xc0000142, TEXT("One of its DLLs could not start (c0000142).")},
    {0xc0000374, TEXT("It crashed because its memory was damaged (c0000374).")},
    {0xc0000409, TEXT("It ended itself on a serious error (c0000409).")},
    {0xc06d007e, TEXT("One of its DLLs is missing (c06d007e)."), TEXT("Install the program anew.")},
    {0xc06d007f, TEXT("One of its DLLs has another version than it expects (c06d007f)."),
     TEXT("Install the program anew.")},
    {0xe06d7363, TEXT("It crashed on a C++ error that it does not handle (e06d7363).")},
    {0xe0434352, TEXT("It crashed on a .NET error that it does not handle (e0434352)."),
     TEXT("It may need Microsoft's .NET Framework.")},
    {0x0eedfade, TEXT("It crashed on a Delphi error that it does not handle (0eedfade).")},
};

QString translated(const char* text) {
    return text ? QCoreApplication::translate("Diagnosis", text) : QString();
}

template <size_t Count>
const Numbered* find(const Numbered (&list)[Count], quint32 number) {
    const auto* found = std::find_if(std::begin(list), std::end(list),
                                     [number](const Numbered& row) { return row.number == number; });
    return found == std::end(list) ? nullptr : found;
}

FailureReason crash(const QString& code) {
    const Numbered* known = find(Crashes, code.toUInt(nullptr, 16));
    const char* advice = known && known->advice ? known->advice : AnotherWine;
    return {translated(known ? known->text : TEXT("It crashed.")), translated(advice), advice == AnotherWine};
}

FailureReason msi(const QString& number) {
    const Numbered* known = find(MsiErrors, number.toUInt());
    if (known)
        return {translated(known->text), translated(known->advice)};
    return {translated(TEXT("The installation failed (%1).")).arg(number), {}};
}

FailureReason missingDll(const FailureSign& sign) {
    if (!sign.component.isEmpty())
        return {translated(TEXT("It needs %1, which is part of %2.")).arg(sign.detail, componentTitle(sign.component)),
                {}};
    if (sign.detail.startsWith("api-ms-win-", Qt::CaseInsensitive) ||
        sign.detail.startsWith("ext-ms-", Qt::CaseInsensitive))
        return {translated(TEXT("It needs a newer Windows than this Wine offers (%1).")).arg(sign.detail),
                translated(AnotherWine), true};
    return {};
}

}  // namespace

FailureReason FailureReason::of(const FailureSign& sign) {
    FailureReason special;
    if (sign.failure == Failure::Crash)
        special = crash(sign.detail);
    else if (sign.failure == Failure::Msi)
        special = msi(sign.detail);
    else if (sign.failure == Failure::MissingDll)
        special = missingDll(sign);
    if (!special.reason.isEmpty())
        return special;
    const auto* words = std::find_if(std::begin(Table), std::end(Table),
                                     [&sign](const Words& row) { return row.failure == sign.failure; });
    if (words == std::end(Table))
        return {};
    const bool isNamed = words->named && (!sign.detail.isEmpty() || !words->unnamed);
    return {isNamed ? translated(words->named).arg(sign.detail) : translated(words->unnamed),
            translated(words->advice), words->advice == AnotherWine};
}
