#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QUrl>

/// A file or folder that the user wants to add, judged by its name and its content.
struct AddedFile {
    Q_DECLARE_TR_FUNCTIONS(AddedFile)
public:
    enum Kind {
        Refused,
        Program,   ///< an .exe or .msi
        Manifest,  ///< a .yml that tells how an application is installed
        Portable,  ///< a folder, or a .zip, with a program in it
    };

    Kind kind = Refused;
    QString path;
    QByteArray manifest;  ///< its text
    QString reason;       ///< why it is refused, for the user

    /// Reads up to 2 MiB of a file, or the names in a folder; for worker threads.
    static AddedFile check(const QString& path);
};

/// What the user has dropped or pasted: a file or folder of this computer, an address of the web, or else
/// a text that says what is wrong. Touches no file.
struct AddedLink {
    QString path;
    QUrl address;
    QString errorText;

    static AddedLink of(const QList<QUrl>& urls);
};
