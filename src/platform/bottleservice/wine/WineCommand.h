#pragma once

#include <QProcess>
#include <QTimer>
#include <optional>

/// Runs one command of a Wine in a process group of its own, with a limit of time. Emits finished() exactly
/// once.
class WineCommand : public QObject {
    Q_OBJECT

public:
    WineCommand(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment,
                QObject* parent = nullptr);

    /// Kills the group if the command still runs.
    ~WineCommand() override;

    /// Where the command's output goes; without it the output is kept for output().
    void setOutputFile(const QString& path);

    /// What the command reads; nothing without it.
    void setInputFile(const QString& path) { m_process.setStandardInputFile(path); }

    /// The command and what it starts get what others leave. Before start().
    void setLowPriority() { m_process.setLowPriority(); }

    void start(int timeoutMs);

    /// While a command is kept from running its limit of time stands still.
    void holdTimeout();
    void continueTimeout();

    /// Kills the whole group; finished() follows.
    void kill();

    QByteArray output() { return m_process.readAllStandardOutput(); }

    bool hasTimedOut() const { return m_timedOut; }
    bool hasStarted() const { return m_process.error() != QProcess::FailedToStart; }

    /// What a command that came to its own end said; nothing for others.
    std::optional<int> exitCode() const { return m_exitCode; }

Q_SIGNALS:
    /// An empty sentence is success.
    void finished(const QString& sentence);

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

    void onFinished(int exitCode, QProcess::ExitStatus status);
    void onError(QProcess::ProcessError error);
    void finish(const QString& sentence);

    GroupProcess m_process;
    QTimer m_timeout;
    int m_heldMs = 0;  ///< what is left of the limit while it stands still
    bool m_timedOut = false;
    bool m_finished = false;
    std::optional<int> m_exitCode;
};
