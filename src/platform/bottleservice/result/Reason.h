#pragma once

#include <QJsonArray>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/// Why something failed, as one or several statements. Each has a code with arguments, so that clients can
/// tell it in the user's language, and an English text. Failures that a client can do nothing about have
/// English text only. A new code needs a row in Reason.cpp and one in the application's ServiceErrorText.
class Reason {
public:
    /// Their names and texts are in a table of Reason.cpp.
    enum Code {
        NoCode,
        Busy,
        NoBottle,
        NoWine,
        NoRunner,
        NoComponent,
        NoKnownFile,
        NotForThisWine,
        NoAddress,
        NoChecksum,
        HasWinetricks,
        HttpStatus,
        NoConnection,
        ServerSilent,
        ClosedTooSoon,
        FetchFailed,
        OtherChecksum,
        OtherSize,
        TooLarge,
        NoRoom,
        DiskFull,
        CannotWrite,
        BadArchive,
        NotInArchive,
        InstallerCode,
        InstallerSlow,
        InstallerCrashed,
        InstallerNotStarted,
        Needs32Bit,
        Cancelled,
        OtherChoice,
        ProgramsNotEnded,
        NoOrdinaryFile,
        OtherFile,
        TemplateFailed,
        BadExport,
        NotOnMachine,
        ExportRunning,
        ExportCancelled,
        ImportRunning,
        ExportTooLarge,
        TooManyFiles,
        BadBackup,
        NewerBackup,
        BottleChanged,
        TooLittleRoom,
        CopyUnderWay,
        ManifestValue,
        ManifestName,
        UnfitManifest,
        BadDllName,
        BadLoadMethod,
        BadFontName,
        WindowsNotSet,
        RegistryUnchanged,
        WineFileGone,
        WineBusy,
        TargetInBottle,
        BottleUnfit,
        CannotRead,
        NoPrograms,
        ProtectedArchive,
        UnfitFolder,
        NoFreeName,
        PathTooLong,
        BottleTooLarge,
        BackupIncomplete,
        NotUpdated,
        FilesNotWritten,
        BottleExists,
        BeingSetUp,
        BadManifest,
        ServiceEnding,
        NoDlls,
        CommandCode,
        CommandSlow,
        CommandCrashed,
        CommandNotStarted,
        NoBottleThere,
        BeingPacked,
        BeingUpgraded,
        BeingChanged,
        BadBottleName,
        PackageInstalled,
        CodeCount
    };

    Reason() = default;
    Reason(const QString& text);
    Reason(const char* text) : Reason(QString(text)) {}
    Reason(Code code, const QStringList& arguments = {});

    bool isEmpty() const { return m_parts.isEmpty(); }
    Reason& operator+=(const Reason& other);

    /// All statements in English.
    QString text() const;
    /// [{"code": name, "arguments": [text, ...]} or {"text": English}, ...]
    QJsonArray toJson() const;

    /// The reason of a failed write, from the error that the file reports.
    static Reason ofWriting(const QString& path, bool isDiskFull, const QString& detail);

    struct Format {
        const char* name;
        const char* text;  ///< with %1 ... for the arguments
    };
    static Format formatOf(Code code);

private:
    struct Part {
        Code code;
        QStringList arguments;  ///< the text itself, without a code
        QString text() const;
    };
    QVector<Part> m_parts;
};

Q_DECLARE_METATYPE(Reason)
