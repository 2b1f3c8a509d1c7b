#pragma once

#include <QProcess>
#include <QTimer>
#include <optional>

/// Runs one command of a Wine in a process group of its own, with a time limit. Lives in the main thread.
class WineCommand : public QObject {
    Q_OBJECT

public:
    WineCommand(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment,
                QObject* parent = nullptr);

    /// Kills the group if the command still runs.
    ~WineCommand() override;

    /// The file that the command reads; by default it reads nothing.
    void setInputFile(const QString& path) { m_process.setStandardInputFile(path); }

    /// Where the command runs; by default where the service does.
    void setDirectory(const QString& path) { m_process.setWorkingDirectory(path); }

    /// Runs the command and its children at low priority. Before start().
    void setLowPriority() { m_process.setLowPriority(); }

    void start(int timeoutMs);

    /// Stops and continues the time limit, for a command that is paused.
    void holdTimeout();
    void continueTimeout();

    /// Kills the whole group; finished() follows.
    void kill();

    /// The last 16 KiB of what the command has written.
    QByteArray output() const { return m_output; }

    bool hasTimedOut() const { return m_timedOut; }
    bool hasStarted() const { return m_process.error() != QProcess::FailedToStart; }

    /// The exit code of a command that has exited by itself; nothing for others.
    std::optional<int> exitCode() const { return m_exitCode; }

Q_SIGNALS:
    /// Exactly once; an empty text is success.
    void finished(const QString& errorText);

private:
    class GroupProcess : public QProcess {
    public:
        void setLowPriority();

    protected:
        void setupChildProcess() override;

    private:
        bool m_isLow = false;
        bool m_withNice = false;
    };

    void readOutput();
    void onFinished(int exitCode, QProcess::ExitStatus status);
    void onError(QProcess::ProcessError error);
    void finish(const QString& errorText);

    GroupProcess m_process;
    QByteArray m_output;
    QTimer m_timeout;
    int m_heldMs = 0;  ///< what is left of the limit while it stands still
    bool m_timedOut = false;
    bool m_finished = false;
    std::optional<int> m_exitCode;
};
