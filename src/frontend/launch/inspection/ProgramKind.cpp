#include "launch/inspection/ProgramKind.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QStringList>
#include <QSysInfo>

#include "core/base/Paths.h"

namespace {

constexpr quint16 IsLibrary = 0x2000;

/// Directories of distribution packages, of plain installations, and of the bottle service's runners.
QStringList wineDirectories() {
    QStringList found{"/usr/lib/i386-linux-gnu/wine",
                      "/usr/lib/x86_64-linux-gnu/wine",
                      "/usr/lib/wine",
                      "/usr/lib32/wine",
                      "/usr/lib64/wine",
                      "/usr/local/lib/wine"};
    for (const QString& parent : {QString("/opt"), Paths::bottlesDataDir() + "/runners"}) {
        for (const QString& name : QDir(parent).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            for (const char* library : {"/lib/wine", "/lib32/wine", "/lib64/wine", "/files/lib/wine"})
                found << parent + '/' + name + library;
    }
    return found;
}

bool isProgramName(const QString& suffix) {
    return QStringList{"exe", "msi", "msp", "scr", "com"}.contains(suffix);
}

ProgramKind portableKind(const ProgramHeader& header, const ProgramHost& host) {
    enum Subsystem { Native = 1, FirstEfi = 10, LastEfi = 13 };
    enum Machine { Arm = 0x1c0, Thumb = 0x1c2, ArmNt = 0x1c4, Arm64 = 0xaa64 };
    if (header.isCut)
        return ProgramKind::Incomplete;
    if (header.subsystem >= FirstEfi && header.subsystem <= LastEfi)
        return ProgramKind::EfiProgram;
    if (header.subsystem == Native)
        return ProgramKind::Driver;
    if ((header.characteristics & IsLibrary) != 0)
        return ProgramKind::Library;
    if (!host.isX86)
        return ProgramKind::Runnable;
    switch (header.machine) {
        case Arm:
        case Thumb:
        case ArmNt:
        case Arm64:
            return ProgramKind::ArmProgram;
        case 0x0:  // unspecified
        case ProgramHeader::MachineI386:
        case 0x14d:
        case 0x14e:
        case 0x8664:
            return ProgramKind::Runnable;
        default:
            return ProgramKind::OtherProcessor;
    }
}

}  // namespace

ProgramHost ProgramHost::thisMachine() {
    ProgramHost host;
    const QString processor = QSysInfo::currentCpuArchitecture();
    host.isX86 = processor == "x86_64" || processor == "i386";
    for (const QString& directory : wineDirectories())
        for (const char* part : {"/i386-windows/winevdm.exe", "/i386-windows/krnl386.exe16"})
            host.runs16Bit = host.runs16Bit || QFile::exists(directory + part);
    host.runsDos = host.runs16Bit && !QStandardPaths::findExecutable("dosbox").isEmpty();
    return host;
}

ProgramKind programKind(const ProgramHeader& header, const QString& suffix, const ProgramHost& host) {
    const QString name = suffix.toLower();
    if (name == "bat" || name == "cmd" || name == "lnk")
        return ProgramKind::Runnable;
    const bool isNamedPackage = name == "msi" || name == "msp";
    switch (header.format) {
        case ProgramHeader::Unreadable:
            return ProgramKind::Runnable;  // reported elsewhere
        case ProgramHeader::Other:         // a .com file of DOS has no header
            return name == "com" ? ProgramKind::DosProgram : ProgramKind::NoProgram;
        case ProgramHeader::Archive:
            return ProgramKind::ArchiveFile;
        case ProgramHeader::Web:
            return isProgramName(name) ? ProgramKind::WebPage : ProgramKind::NoProgram;
        case ProgramHeader::Unix:
            return ProgramKind::UnixProgram;
        case ProgramHeader::Dos:
            if (header.isCut)
                return ProgramKind::Incomplete;
            return host.runsDos ? ProgramKind::Runnable : ProgramKind::DosProgram;
        case ProgramHeader::Segmented:
        case ProgramHeader::Linear:
            if (header.isForOs2)
                return ProgramKind::Os2Program;
            if (header.format == ProgramHeader::Linear)
                return host.runsDos ? ProgramKind::Runnable : ProgramKind::DosProgram;
            return host.runs16Bit ? ProgramKind::Runnable : ProgramKind::Windows16;
        case ProgramHeader::Portable:
            return portableKind(header, host);
        case ProgramHeader::Compound:
            if (isNamedPackage)
                return ProgramKind::Runnable;
            return header.isPackage ? ProgramKind::MisnamedPackage : ProgramKind::NoProgram;
    }
    return ProgramKind::Runnable;
}
