#pragma once

#include <functional>

class ExeFileExecutor;
class LaunchView;
struct FailedStart;
struct LaunchedProgram;

/// What is recorded of one launch. Its ExeFileRunner sets the facts as they become known and has them written
/// to the event log at the end. GUI thread; the records are written in the background, also when the launch
/// is gone by then.
struct LaunchRecorder {
    bool succeeded = false;
    bool repaired = false;  ///< the user has asked for a repair
    bool canceled = false;  ///< the user has ended the launch
    int rating = 0;         ///< 0 when none was given
    int seconds = 0;        ///< of the last start

    /// A start that has failed, as the program's tile shows it.
    FailedStart failedStart(const ExeFileExecutor& executor) const;
    /// Writes the record of a stored program's start.
    void writeRun(const LaunchedProgram& program) const;
    /// Collects what is known now of the launch of a file. The returned function writes the record, with the
    /// number of programs that the bottle has when the file's entry has been made.
    std::function<void()> fileRecord(const LaunchedProgram& program, ExeFileExecutor& executor,
                                     const LaunchView& view, const QString& runner) const;
};
