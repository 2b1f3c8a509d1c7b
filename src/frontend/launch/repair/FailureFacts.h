#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "launch/repair/RepairAction.h"

class WineLogParser;

/// What can be wrong with a program under Wine. What stands first is told first: the cause before its
/// consequences, and a clear trace before a vague one.
enum class Failure {
    NoDisplay,
    DiskFull,
    NotOwner,        ///< the bottle belongs to another user
    ServerMismatch,  ///< another version of Wine is running in the bottle
    DamagedBottle,   ///< detail: Wine's file that is missing
    TooManyFiles,
    Needs32Bit,
    BadProgram,  ///< no Windows program, cut off, or for another processor
    OutOfMemory,
    AntiCheat,          ///< detail: its product name
    CopyProtection,     ///< the same
    KernelDriver,       ///< detail: the driver
    MissingDll,         ///< detail: its file name
    MissingEntryPoint,  ///< detail: the DLL that is of another version
    SideBySide,         ///< detail: the assembly of a manifest
    MissingMono,
    MissingDotNetFramework,
    MissingDotNet,  ///< detail: its version
    MissingJava,
    MissingGecko,
    MissingWebView2,
    MissingWinRT,  ///< detail: the class
    NoVulkan,
    NoDirect3D12,
    NoOpenGL,
    WindowsVersion,  ///< detail: the one that it asks for
    NeedsAdministrator,
    AlreadyRunning,
    Msi,  ///< detail: the error's number
    Updater,
    Offline,                ///< the program has not reached its server
    UnimplementedFunction,  ///< detail: the DLL
    ManagedException,       ///< detail: the .NET class
    Crash,                  ///< detail: the exception's code in hexadecimal digits
    SetupFailed,
    MissingDatabase,
    MissingCodec,
    NoFreeType,    ///< Wine cannot draw text
    NoEncryption,  ///< Wine's library for secure connections is missing
    BrokenRuntime,
    Locked,  ///< a file is in use
    AccessDenied,
    NetworkPath,
    MissingFlash,
    MissingClass,  ///< detail: of COM
    Hang,
};

/// A trace of a failure in the log.
struct FailureSign {
    Failure failure;
    QString detail;     ///< a name from the log, short and of one line; empty where there is none
    QString component;  ///< that brings what is missing; empty where nobody has it
};

/// What is known of a launch that has failed, for Diagnosis::of. A stored program that nobody has watched is
/// described by its log alone: addLog() then fills all that there is, and the caller adds `components`.
struct FailureFacts {
    int exitCode = 0;              ///< of the program, 0 to 255
    bool isExitCodeKnown = false;  ///< by whoever started the program
    bool isPackage = false;        ///< of Windows Installer, whose errors are the exit codes
    int seconds = 0;               ///< that the program has run
    bool isSilent = false;         ///< its processes run, but there was no window and no log line for long
    bool windowSeen = false;
    bool crashed = false;
    QString launcherReason;  ///< why the launch script never reached the program, ready for the user

    QVector<FailureSign> signs;  ///< in the order of Failure

    QStringList components;  ///< that the log asks for and that were not tried yet
    QStringList fonts;       ///< the same
    QStringList triedComponents;
    QStringList triedFonts;
    QStringList failedComponents;  ///< those of the tried ones that could not be installed

    qint64 downloadBytes = 0;  ///< that the components take, when it is known

    /// What Repair could do in this bottle, apart from components and fonts.
    QVector<RepairAction> possible;

    /// The components that would bring what the signs report missing, without those that were tried.
    QStringList missingComponents() const;

    /// Takes from a log that has been parsed what is found in it; `findings` is the parser's result. Asks for
    /// no components.
    void addLog(const WineLogParser& log, int findings);
};
