#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "launch/repair/RepairAction.h"

class WineLogParser;

/// What can go wrong with a program under Wine. The order is the order of reporting: causes before
/// consequences, specific failures before vague ones.
enum class Failure {
    NoDisplay,
    DiskFull,
    NotOwner,        ///< the bottle belongs to another user
    ServerMismatch,  ///< another version of Wine runs in the bottle
    DamagedBottle,   ///< detail: the missing file of Wine
    TooManyFiles,
    Needs32Bit,
    BadProgram,  ///< not a Windows program, truncated, or for another processor
    OutOfMemory,
    AntiCheat,          ///< detail: the product
    CopyProtection,     ///< detail: the product
    KernelDriver,       ///< detail: the driver
    MissingDll,         ///< detail: its file name
    MissingEntryPoint,  ///< detail: the DLL, which has another version
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
    WindowsVersion,  ///< detail: the required version
    NeedsAdministrator,
    AlreadyRunning,
    Msi,  ///< detail: the error's number
    Updater,
    Offline,                ///< the program could not reach its server
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

/// One known pattern of a failure, found in a log.
struct FailureSign {
    Failure failure;
    QString detail;     ///< a name from the log, short, on one line; may be empty
    QString component;  ///< the component that contains what is missing; empty if there is none
};

/// The input of Diagnosis::of: what is known about a failed launch. For a stored program that was not
/// monitored, addLog() sets everything except `components`, which the caller sets.
struct FailureFacts {
    int exitCode = 0;              ///< 0 to 255
    bool isExitCodeKnown = false;  ///< whether `exitCode` is valid
    bool isPackage = false;        ///< a Windows Installer package, whose error numbers are the exit codes
    int seconds = 0;               ///< run time of the program
    bool isSilent = false;         ///< its processes run without a window and without log lines
    bool windowSeen = false;
    bool crashed = false;
    QString launcherReason;  ///< translated error of the launch script, if it did not start the program

    QVector<FailureSign> signs;  ///< in the order of Failure

    QStringList components;  ///< components that the log asks for and that were not tried
    QStringList fonts;       ///< likewise
    QStringList triedComponents;
    QStringList triedFonts;
    QStringList failedComponents;  ///< tried components that could not be installed

    qint64 downloadBytes = 0;  ///< size of `components`; 0 when unknown

    /// Other repairs that are possible in this bottle.
    QVector<RepairAction> possible;

    /// The components for all signs, without those that were tried.
    QStringList missingComponents() const;

    /// Adds the findings of a parsed log; `findings` is the parser's result. Does not change `components`.
    void addLog(const WineLogParser& log, int findings);
};
