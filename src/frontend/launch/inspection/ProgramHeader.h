#pragma once

#include <QString>

/// The headers of a file. Reads at most about 12 KiB, whatever sizes the file claims.
struct ProgramHeader {
    enum Format {
        Unreadable,  ///< not a regular file, or no read permission
        Other,       ///< none of the following
        Archive,     ///< compressed files, without a program in front
        Web,         ///< markup, such as an error page saved by a failed download
        Unix,        ///< ELF or a script with "#!"
        Dos,         ///< MZ without a newer header
        Segmented,   ///< NE
        Linear,      ///< LE or LX
        Portable,    ///< PE
        Compound,    ///< OLE compound file
    };

    static constexpr quint16 MachineI386 = 0x14c;

    Format format = Unreadable;
    bool isCut = false;      ///< the file is shorter than its headers say
    bool isForOs2 = false;   ///< Segmented, Linear
    bool isPackage = false;  ///< Compound: the class of Windows Installer's packages and patches
    bool isDotNet = false;   ///< Portable, like the following: code for no particular processor
    quint16 machine = 0;
    quint16 magic = 0;  ///< in the optional header
    quint16 characteristics = 0;
    quint16 subsystem = 0;

    static ProgramHeader read(const QString& path);
    /// Whether the content is a Windows program of any kind, regardless of the file name.
    bool isProgram() const;
    /// Whether it needs a 32-bit Wine.
    bool is32BitOnly() const;
};
