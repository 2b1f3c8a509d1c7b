#pragma once

#include <QJsonArray>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/// Why something failed, in one statement or several: each a code with its arguments, for clients that tell
/// it in their user's language, and the same in English. What a client can do nothing about has English text
/// only.
class Reason {
public:
    /// The names and texts are in the table of formats().
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

    /// What became of an attempt to write a file, from the file's own error.
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
