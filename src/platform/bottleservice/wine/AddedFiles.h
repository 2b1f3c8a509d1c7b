#pragma once

#include <QString>
#include <QStringList>
#include <atomic>

/// What a bottle holds beyond the template that it is a copy of: files that are new or have other bytes.
/// Links are never followed and hold nothing themselves, so that neither the user's own directories nor other
/// drives belong to a bottle. For worker threads.
struct AddedFiles {
    bool isComplete = false;  ///< everything was read; otherwise there may be more
    QString first;            ///< a path of one of them, for the log; empty when there is none
    QStringList
        executables;  ///< paths of the programs among them outside of "windows", MaximumExecutables at most

    static constexpr int MaximumExecutables = 500;

    static AddedFiles of(const QString& bottlePath, const QString& templatePath,
                         const std::atomic_bool& cancelled);

    /// Whether a path relative to the bottle is one that Wine, the service or the application writes to by
    /// themselves, or a temporary file.
    static bool isExpected(const QString& relative);
};
