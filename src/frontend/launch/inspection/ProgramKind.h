#pragma once

#include <QString>

/// What the headers of a file say about it. Reading takes at most some 12 KiB of the file, whatever it
/// claims.
struct ProgramHeader {
    enum Format {
        Unreadable,  ///< no regular file, or no right to read it
        Other,       ///< nothing below
        Archive,     ///< of files, without a program in front
        Web,         ///< markup, such as the page that a failed download leaves behind
        Unix,        ///< ELF or a script with "#!"
        Dos,         ///< MZ with nothing newer behind it
        Segmented,   ///< NE
        Linear,      ///< LE or LX
        Portable,    ///< PE
        Compound,    ///< OLE compound file
    };

    Format format = Unreadable;
    bool isCut = false;      ///< the file ends before what its headers announce
    bool isForOs2 = false;   ///< Segmented, Linear
    bool isPackage = false;  ///< Compound: the class of Windows Installer's packages and patches
    bool isDotNet = false;   ///< Portable, as the next: its code is for no processor in particular
    quint16 machine = 0;
    quint16 magic = 0;  ///< of the optional header
    quint16 characteristics = 0;
    quint16 subsystem = 0;

    static ProgramHeader read(const QString& path);
    /// Content that counts as a Windows program of some sort whatever its file is called.
    bool isProgram() const;
    /// Only 32-bit code runs it.
    bool is32BitOnly() const;
};

/// What the machine can run besides Windows programs for its own processor.
struct ProgramHost {
    bool isX86 = true;
    bool runs16Bit = false;  ///< a Wine with its 16-bit parts is installed
    bool runsDos = false;    ///< and DOSBox, to which it hands DOS programs
    static ProgramHost thisMachine();
};

enum class ProgramKind {
    Runnable,  ///< or unknown: what is not known for certain to fail is started
    NoProgram,
    ArchiveFile,
    WebPage,
    UnixProgram,
    MisnamedPackage,  ///< Wine knows packages by their suffix only
    DosProgram,
    Windows16,
    Os2Program,
    ArmProgram,
    OtherProcessor,
    Library,
    Driver,
    EfiProgram,
    Incomplete,
};

/// The suffix without its dot, in any case. Batch files and links are taken at their name.
ProgramKind programKind(const ProgramHeader& header, const QString& suffix, const ProgramHost& host);
