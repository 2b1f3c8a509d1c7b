#pragma once

#include <QString>

/// Why a file that the user has opened is not launched at all, known before anything has been made for it.
struct OpenRefusal {
    QString reason;  ///< in the user's language; empty when nothing stands in the way
    QString advice;  ///< what the user can do; may be part of the reason
    QString logLine;
    QString title{};  ///< of its window; empty for one that names the file

    explicit operator bool() const { return !reason.isEmpty(); }

    /// Looks at the file's path, at its kind and headers, and at the place where bottles are kept.
    static OpenRefusal of(const QString& path);
    /// The same for a file that the command line does not take for a program; there always is a reason.
    static OpenRefusal ofOther(const QString& path);
    /// The directory of the bottles cannot be written or made.
    static OpenRefusal ofBottlesPlace();
    static OpenRefusal noSessionBus();
};
