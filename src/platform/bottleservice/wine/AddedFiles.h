#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <atomic>

/// The files of a bottle that its template does not have, or has with other bytes. Links are not followed and
/// do not count, so that neither the user's own directories nor other drives belong to the bottle. Blocks;
/// for worker threads.
struct AddedFiles {
    bool isComplete = false;  ///< everything was read; otherwise there may be more files
    QString first;            ///< path of one of the files, for the log; empty when there is none
    /// Paths of the programs among them outside of "windows", MaximumExecutables at most.
    QStringList executables;

    static constexpr int MaximumExecutables = 500;

    /// Records the files that a new bottle has beyond its template (setup-files.json), since whoever has made
    /// it can make it again: as long as they keep their size and time, they do not count. Returns an error
    /// text, empty on success.
    static QString record(const QString& directory, const QString& templatePath,
                          const std::atomic_bool& cancelled);

    /// The paths of the recorded files that have kept their size and time.
    static QSet<QString> unchanged(const QString& bottlePath);

    static AddedFiles of(const QString& bottlePath, const QString& templatePath,
                         const std::atomic_bool& cancelled);

    /// Whether Wine, the service or the application write to this path (relative to the bottle) by
    /// themselves, or it is a temporary file.
    static bool isExpected(const QString& relative);
};
