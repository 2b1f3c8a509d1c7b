#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// Runs one command without a shell, waits for it within a limit, and says how it ended. Blocks the calling
/// thread, which may be any; standard input is empty. A command that does not end in time is killed with the
/// processes of its group, and reaped. Every ending but exit code 0 leaves a warning in the log.
class ToolProcess {
public:
    ToolProcess() = delete;

    static constexpr int DefaultTimeoutMs = 30000;
    static constexpr int NoTimeLimit = -1;
    static constexpr int MaxOutputBytes = 16 * 1024 * 1024;  ///< of each stream; the rest is read and dropped

    enum class State { FailedToStart, Crashed, TimedOut, Exited };

    struct Result {
        State state = State::FailedToStart;
        int exitCode = -1;  ///< of the command; -1 unless Exited
        QByteArray standardOutput;
        QByteArray standardError;
        bool truncated = false;  ///< a stream was longer than MaxOutputBytes

        bool succeeded() const { return state == State::Exited && exitCode == 0; }
    };

    /// program is a path or is looked up in PATH. An empty environment means that of this process.
    static Result run(const QString& program, const QStringList& arguments, int timeoutMs = DefaultTimeoutMs,
                      const QProcessEnvironment& environment = QProcessEnvironment());

    /// The same without a warning, for commands whose failure is normal.
    static Result runQuietly(const QString& program, const QStringList& arguments);
};
