#pragma once

#include <QString>

#include "launch/inspection/ProgramHeader.h"

/// What this machine can run besides Windows programs for its own processor.
struct ProgramHost {
    bool isX86 = true;
    bool runs16Bit = false;  ///< a Wine with 16-bit support is installed
    bool runsDos = false;    ///< and DOSBox, which that Wine uses for DOS programs
    static ProgramHost thisMachine();
};

enum class ProgramKind {
    Runnable,  ///< or unknown: anything not certain to fail is started
    NoProgram,
    ArchiveFile,
    WebPage,
    UnixProgram,
    MisnamedPackage,  ///< Wine recognises packages by their suffix only
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

/// `suffix` has no dot; case does not matter. Batch files and links are recognised by suffix alone.
ProgramKind programKind(const ProgramHeader& header, const QString& suffix, const ProgramHost& host);
