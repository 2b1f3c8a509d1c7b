#include "launch/repair/FailureReason.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>

#include "launch/repair/ComponentTitle.h"

namespace {

struct Words {
    Failure failure;
    const char* unnamed;  ///< for a sign without a detail; null if every sign has one
    const char* named;    ///< %1 is the detail; null if it is not shown
    const char* advice;
};

constexpr char AnotherWine[] = QT_TRANSLATE_NOOP("Diagnosis", "Another version of Wine may run it.");

constexpr Words Table[] = {
    {Failure::NoDisplay, QT_TRANSLATE_NOOP("Diagnosis", "It found no display to show a window on."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Start it from a desktop session.")},
    {Failure::DiskFull, QT_TRANSLATE_NOOP("Diagnosis", "The disk is full."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Make room and start it again.")},
    {Failure::NotOwner, QT_TRANSLATE_NOOP("Diagnosis", "Its bottle belongs to another user."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Start it as that user, without sudo.")},
    {Failure::ServerMismatch,
     QT_TRANSLATE_NOOP("Diagnosis", "Another version of Wine is still running in its bottle."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "End the programs of this bottle and start it again.")},
    {Failure::DamagedBottle,
     QT_TRANSLATE_NOOP("Diagnosis", "Windows files of its bottle are missing or damaged."),
     QT_TRANSLATE_NOOP("Diagnosis", "The bottle is damaged: %1 of Windows cannot be loaded."),
     QT_TRANSLATE_NOOP("Diagnosis", "Remove the program and install it anew.")},
    {Failure::TooManyFiles,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs more open files than this system allows."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Raise the limit of open files (ulimit -n).")},
    {Failure::Needs32Bit,
     QT_TRANSLATE_NOOP("Diagnosis", "A part of it is a 32-bit program, which this Wine cannot run."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install 32-bit Wine (the package wine32).")},
    {Failure::BadProgram,
     QT_TRANSLATE_NOOP("Diagnosis", "Its file is damaged or made for another kind of computer."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Download it once more.")},
    {Failure::OutOfMemory, QT_TRANSLATE_NOOP("Diagnosis", "It ran out of memory."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Close other programs and start it again.")},
    {Failure::AntiCheat, nullptr,
     QT_TRANSLATE_NOOP("Diagnosis",
                       "It is guarded by an anti-cheat system (%1), which does not accept Wine."),
     QT_TRANSLATE_NOOP("Diagnosis", "Only its maker can change that.")},
    {Failure::CopyProtection,
     QT_TRANSLATE_NOOP("Diagnosis", "Its copy protection does not accept Wine or misses its disc or dongle."),
     QT_TRANSLATE_NOOP("Diagnosis",
                       "Its copy protection (%1) does not accept Wine or misses its disc or dongle."),
     QT_TRANSLATE_NOOP("Diagnosis",
                       "Insert the disc or the dongle, or ask the maker for a version without.")},
    {Failure::KernelDriver, nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs the Windows driver %1, and Wine cannot load drivers."),
     QT_TRANSLATE_NOOP("Diagnosis", "Look for a version that needs no driver.")},
    {Failure::MissingDll, nullptr, QT_TRANSLATE_NOOP("Diagnosis", "It needs %1, which is missing."),
     QT_TRANSLATE_NOOP("Diagnosis", "Put that file beside the program, or install the program anew.")},
    {Failure::MissingEntryPoint,
     QT_TRANSLATE_NOOP("Diagnosis", "One of its DLLs has another version than it expects."),
     QT_TRANSLATE_NOOP("Diagnosis", "It needs another version of %1."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew.")},
    {Failure::SideBySide, QT_TRANSLATE_NOOP("Diagnosis", "A runtime that its manifest names is missing."),
     QT_TRANSLATE_NOOP("Diagnosis", "It needs the runtime %1, which its manifest names."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew.")},
    {Failure::MissingMono, QT_TRANSLATE_NOOP("Diagnosis", "It needs .NET."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install Wine Mono into its bottle.")},
    {Failure::MissingDotNetFramework, QT_TRANSLATE_NOOP("Diagnosis", "It needs .NET Framework."),
     QT_TRANSLATE_NOOP("Diagnosis", "It needs .NET Framework %1."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install it into its bottle.")},
    {Failure::MissingDotNet, QT_TRANSLATE_NOOP("Diagnosis", "It needs the .NET runtime."),
     QT_TRANSLATE_NOOP("Diagnosis", "It needs the .NET %1 runtime."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install it into its bottle.")},
    {Failure::MissingJava, QT_TRANSLATE_NOOP("Diagnosis", "It needs Java for Windows."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install a Java runtime for Windows into its bottle.")},
    {Failure::MissingGecko,
     QT_TRANSLATE_NOOP("Diagnosis", "It shows web pages and needs Wine Gecko for them."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install it into its bottle.")},
    {Failure::MissingWebView2, QT_TRANSLATE_NOOP("Diagnosis", "It needs the WebView2 runtime."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install it into its bottle.")},
    {Failure::MissingWinRT, nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs a part of Windows that this Wine lacks (%1)."), AnotherWine},
    {Failure::NoVulkan,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs Vulkan, and this system has no driver for it."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install the Vulkan driver of your graphics card.")},
    {Failure::NoDirect3D12, QT_TRANSLATE_NOOP("Diagnosis", "It needs Direct3D 12, which does not work here."),
     nullptr,
     QT_TRANSLATE_NOOP(
         "Diagnosis",
         "Install the Vulkan driver of your graphics card, or let the program use Direct3D 11.")},
    {Failure::NoOpenGL,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs 3D graphics, and OpenGL does not work on this system."),
     nullptr, QT_TRANSLATE_NOOP("Diagnosis", "Install the driver of your graphics card.")},
    {Failure::WindowsVersion, QT_TRANSLATE_NOOP("Diagnosis", "It asks for another version of Windows."),
     QT_TRANSLATE_NOOP("Diagnosis", "It asks for Windows %1."), AnotherWine},
    {Failure::NeedsAdministrator,
     QT_TRANSLATE_NOOP("Diagnosis", "It asks for administrator rights that it does not find."), nullptr,
     AnotherWine},
    {Failure::AlreadyRunning, QT_TRANSLATE_NOOP("Diagnosis", "It says that it is already running."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "End the other one, or all programs of its bottle, and start it again.")},
    {Failure::Updater, QT_TRANSLATE_NOOP("Diagnosis", "Its updater failed."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Download the newest version from its maker and install that.")},
    {Failure::Offline, QT_TRANSLATE_NOOP("Diagnosis", "It did not reach its server."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Check the network and start it again.")},
    {Failure::UnimplementedFunction,
     QT_TRANSLATE_NOOP("Diagnosis", "It calls a function that this Wine lacks."),
     QT_TRANSLATE_NOOP("Diagnosis", "It calls a function of %1 that this Wine lacks."), AnotherWine},
    {Failure::ManagedException, nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "It ended with a .NET error that it does not handle (%1)."),
     QT_TRANSLATE_NOOP("Diagnosis", "It may need Microsoft's .NET Framework.")},
    {Failure::SetupFailed, QT_TRANSLATE_NOOP("Diagnosis", "Its installation failed."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Start it again; where it asks, leave out drivers and services.")},
    {Failure::MissingDatabase, QT_TRANSLATE_NOOP("Diagnosis", "It needs a database engine of Microsoft's."),
     nullptr, QT_TRANSLATE_NOOP("Diagnosis", "Install it into its bottle.")},
    {Failure::MissingCodec,
     QT_TRANSLATE_NOOP("Diagnosis", "It plays video or sound for which this system has no decoder."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Install the GStreamer plugins (good, bad, ugly, libav).")},
    {Failure::NoEncryption,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs secure connections, and Wine misses libgnutls for them."),
     nullptr, QT_TRANSLATE_NOOP("Diagnosis", "Install the package libgnutls30.")},
    {Failure::NoFreeType, QT_TRANSLATE_NOOP("Diagnosis", "Wine cannot draw text: FreeType is missing."),
     nullptr, QT_TRANSLATE_NOOP("Diagnosis", "Install the package libfreetype6.")},
    {Failure::BrokenRuntime,
     QT_TRANSLATE_NOOP("Diagnosis", "The runtime around its Proton runner is broken."), nullptr, AnotherWine},
    {Failure::Locked, QT_TRANSLATE_NOOP("Diagnosis", "A file that it needs is in use by another program."),
     nullptr, QT_TRANSLATE_NOOP("Diagnosis", "End the other programs of its bottle and start it again.")},
    {Failure::AccessDenied, QT_TRANSLATE_NOOP("Diagnosis", "It was not allowed to open a file."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Move it to a folder that you may write to.")},
    {Failure::NetworkPath,
     QT_TRANSLATE_NOOP("Diagnosis", "It looks for something on a network share that is not there."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Mount the share and open the program from there.")},
    {Failure::MissingFlash,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs Flash Player, which is not made any more."), nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "Ask its maker for a newer version.")},
    {Failure::MissingClass, nullptr,
     QT_TRANSLATE_NOOP("Diagnosis", "It needs a COM class that is not registered (%1)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew, with all its parts.")},
    {Failure::Hang, QT_TRANSLATE_NOOP("Diagnosis", "It hangs: its threads wait for each other."), nullptr,
     AnotherWine},
};

struct Numbered {
    quint32 number;
    const char* text;
    const char* advice = nullptr;
};

constexpr Numbered MsiErrors[] = {
    {1601, QT_TRANSLATE_NOOP("Diagnosis", "Windows Installer could not be started.")},
    {1602, QT_TRANSLATE_NOOP("Diagnosis", "The installation was cancelled."),
     QT_TRANSLATE_NOOP("Diagnosis", "Start it again.")},
    {1603, QT_TRANSLATE_NOOP("Diagnosis", "The installation failed with a serious error (1603)."),
     QT_TRANSLATE_NOOP("Diagnosis", "View Logs may name the step that failed.")},
    {1605, QT_TRANSLATE_NOOP("Diagnosis", "It wants to change a program that is not installed (1605)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the full version first.")},
    {1612, QT_TRANSLATE_NOOP("Diagnosis", "The installer does not find its source files (1612)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Keep all its files together.")},
    {1618, QT_TRANSLATE_NOOP("Diagnosis", "Another installation is still running (1618)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Wait for its end and start this one again.")},
    {1619, QT_TRANSLATE_NOOP("Diagnosis", "The installer package cannot be opened (1619)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Download it once more.")},
    {1620, QT_TRANSLATE_NOOP("Diagnosis", "The installer package is damaged (1620)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Download it once more.")},
    {1622, QT_TRANSLATE_NOOP("Diagnosis", "The installer could not write its log (1622)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Make room on the disk and start it again.")},
    {1625, QT_TRANSLATE_NOOP("Diagnosis", "A policy forbids the installation (1625).")},
    {1627, QT_TRANSLATE_NOOP("Diagnosis", "The installer package cannot be run (1627)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Download it once more.")},
    {1632, QT_TRANSLATE_NOOP("Diagnosis", "The folder for temporary files is full or missing (1632)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Make room and start it again.")},
    {1633, QT_TRANSLATE_NOOP("Diagnosis", "The installer is made for another kind of computer (1633)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Get the version for 64-bit or 32-bit Windows.")},
    {1638, QT_TRANSLATE_NOOP("Diagnosis", "Another version is installed already (1638)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Remove that one first.")},
    {1639, QT_TRANSLATE_NOOP("Diagnosis", "The installer was started with wrong arguments (1639).")},
    {1641, QT_TRANSLATE_NOOP("Diagnosis", "The installer wants Windows to restart (1641)."),
     QT_TRANSLATE_NOOP("Diagnosis", "No restart is needed here; start the program.")},
    {1722, QT_TRANSLATE_NOOP("Diagnosis", "A step of the installation failed (1722)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Start it again; leave out what is optional.")},
};

constexpr Numbered Crashes[] = {
    {0x80000003, QT_TRANSLATE_NOOP("Diagnosis", "It stopped itself at a check that failed (80000003).")},
    {0xc0000005, QT_TRANSLATE_NOOP("Diagnosis", "It crashed on memory that it may not use (c0000005).")},
    {0xc000001d,
     QT_TRANSLATE_NOOP("Diagnosis",
                       "It crashed on an instruction that this processor does not know (c000001d)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Look for a version for older processors.")},
    {0xc0000017, QT_TRANSLATE_NOOP("Diagnosis", "It ran out of memory (c0000017)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Close other programs and start it again.")},
    {0xc0000094, QT_TRANSLATE_NOOP("Diagnosis", "It crashed on a division by zero (c0000094).")},
    {0xc0000096,
     QT_TRANSLATE_NOOP("Diagnosis", "It tried what only drivers may do (c0000096), as copy protections do.")},
    {0xc00000fd, QT_TRANSLATE_NOOP("Diagnosis", "It crashed because its stack was full (c00000fd).")},
    {0xc0000135, QT_TRANSLATE_NOOP("Diagnosis", "One of its DLLs is missing (c0000135)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew.")},
    {0xc0000139,
     QT_TRANSLATE_NOOP("Diagnosis", "One of its DLLs has another version than it expects (c0000139)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew.")},
    {0xc0000142, QT_TRANSLATE_NOOP("Diagnosis", "One of its DLLs could not start (c0000142).")},
    {0xc0000374, QT_TRANSLATE_NOOP("Diagnosis", "It crashed because its memory was damaged (c0000374).")},
    {0xc0000409, QT_TRANSLATE_NOOP("Diagnosis", "It ended itself on a serious error (c0000409).")},
    {0xc06d007e, QT_TRANSLATE_NOOP("Diagnosis", "One of its DLLs is missing (c06d007e)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew.")},
    {0xc06d007f,
     QT_TRANSLATE_NOOP("Diagnosis", "One of its DLLs has another version than it expects (c06d007f)."),
     QT_TRANSLATE_NOOP("Diagnosis", "Install the program anew.")},
    {0xe06d7363,
     QT_TRANSLATE_NOOP("Diagnosis", "It crashed on a C++ error that it does not handle (e06d7363).")},
    {0xe0434352,
     QT_TRANSLATE_NOOP("Diagnosis", "It crashed on a .NET error that it does not handle (e0434352)."),
     QT_TRANSLATE_NOOP("Diagnosis", "It may need Microsoft's .NET Framework.")},
    {0x0eedfade,
     QT_TRANSLATE_NOOP("Diagnosis", "It crashed on a Delphi error that it does not handle (0eedfade).")},
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
    return {translated(known ? known->text : QT_TRANSLATE_NOOP("Diagnosis", "It crashed.")),
            translated(advice), advice == AnotherWine};
}

FailureReason msi(const QString& number) {
    const Numbered* known = find(MsiErrors, number.toUInt());
    if (known)
        return {translated(known->text), translated(known->advice)};
    return {translated(QT_TRANSLATE_NOOP("Diagnosis", "The installation failed (%1).")).arg(number), {}};
}

FailureReason missingDll(const FailureSign& sign) {
    const QString title = componentTitle(sign.component);
    if (title.compare(QString(sign.detail).remove(".dll", Qt::CaseInsensitive), Qt::CaseInsensitive) == 0)
        return {translated(QT_TRANSLATE_NOOP("Diagnosis", "It needs %1.")).arg(sign.detail), {}};
    if (!sign.component.isEmpty())
        return {translated(QT_TRANSLATE_NOOP("Diagnosis", "It needs %1, which is part of %2."))
                    .arg(sign.detail, title),
                {}};
    if (sign.detail.startsWith("api-ms-win-", Qt::CaseInsensitive) ||
        sign.detail.startsWith("ext-ms-", Qt::CaseInsensitive))
        return {
            translated(QT_TRANSLATE_NOOP("Diagnosis", "It needs a newer Windows than this Wine offers (%1)."))
                .arg(sign.detail),
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
