#pragma once

#include <QFuture>
#include <QJsonObject>
#include <optional>

#include "backend/ProgramRef.h"
#include "launch/open/FileEntry.h"

struct FailedStart;

/// The launched program as the library knows it: a stored program, or a file that becomes a program of its
/// bottle. An ExeFileRunner owns it; the work at the end of a launch takes copies. GUI thread, except
/// addedUuid(). What it asks of the service is done on ServiceThreads and holds a PendingWork, so that it is
/// done even when the launch is gone by then. A refusal is logged and changes nothing.
struct LaunchedProgram {
    FileEntry file;          ///< bottle and name, also of a stored program; its path is then empty
    QString uuid;            ///< of a stored program, otherwise empty
    QFuture<QString> added;  ///< id of the program made of the file; canceled while addFile() was not called

    bool isStored() const { return file.exePath.isEmpty(); }
    bool isPublic() const;  ///< in a public bottle, which the user cannot change
    ProgramRef ref() const { return {file.bottle, uuid}; }
    /// The stored program's record. Without a value, with a warning, when the bottle's record is empty or
    /// does not have it.
    std::optional<QJsonObject> entry(const QJsonObject& bottleRecord) const;

    /// Makes a program of the file, unless the bottle has it. Does nothing for a stored program.
    void addFile();
    /// After the program's end: makes a program of the file if the bottle has no program, in which case it
    /// has got no shortcuts either. A set-up that has succeeded without shortcuts gets no entry, since its
    /// clean-up decides about the bottle.
    void checkLinks(bool success, bool isInstaller);
    /// The id of the program that addFile() made, or empty. Waits for an addition that is under way.
    QString addedUuid() const;
    /// Records for the program's tile whether the start was good (no reason) or has failed.
    void recordStart(const FailedStart& start) const;
};
