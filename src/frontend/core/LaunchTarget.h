#pragma once

#include <QStringList>

/// What a positional argument of the command line names: a stored program, a file, or nothing that can be
/// opened.
struct LaunchTarget {
    enum Kind { Invalid, Missing, StoredProgram, Executable, PackageFile, OtherFile };

    Kind kind = Invalid;
    QString bottle;  ///< StoredProgram
    QString uuid;    ///< StoredProgram
    QString path;    ///< canonical path of a file that exists

    /// "lumorawine://<bottle>/<uuid>" is split at its last "/", so that a public bottle keeps its own;
    /// anything else is a path with or without "file://". A file with another suffix than a program's counts
    /// as one when its content is.
    static LaunchTarget fromUrl(const QString& url);
    /// As above for a file only; takes the wider set of suffixes that the configuration window can open.
    static LaunchTarget fromDebugUrl(const QString& url);
};

/// A document or link that is to be opened with what a bottle has registered for its kind.
struct OpenTarget {
    QString bottle;
    QString extension;  ///< with its dot, or the scheme of a link
    QString file;       ///< of a file that exists the absolute path

    /// From the words bottle, extension (may be left out) and file; at least two of them.
    static OpenTarget fromWords(const QStringList& words);
};
