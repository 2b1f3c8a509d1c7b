#pragma once

#include <QString>

/// The reason why an opened file is not launched, found before anything is created for it.
struct OpenRefusal {
    QString reason;  ///< translated; empty if the file can be launched
    QString advice;  ///< what the user can do; empty if part of the reason
    QString logLine;
    QString title{};  ///< window title; if empty, the title names the file

    explicit operator bool() const { return !reason.isEmpty(); }

    /// Checks the path, the file's kind and headers, and the directory of the bottles.
    static OpenRefusal of(const QString& path);
    /// For a file that the command line does not accept as a program; always returns a reason.
    static OpenRefusal ofOther(const QString& path);
    /// Checks whether the directory of the bottles can be written or created.
    static OpenRefusal ofBottlesPlace();
    static OpenRefusal noSessionBus();
};
