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

    void start(int timeoutMs);

    /// Kills the whole group; finished() follows.
    void kill();

    QByteArray output() { return m_process.readAllStandardOutput(); }

    /// What a command that came to its own end said; nothing for others.
    std::optional<int> exitCode() const { return m_exitCode; }

Q_SIGNALS:
    /// An empty sentence is success.
    void finished(const QString& sentence);

private:
    class GroupProcess : public QProcess {
    protected:
        void setupChildProcess() override;
    };

    void onFinished(int exitCode, QProcess::ExitStatus status);
    void onError(QProcess::ProcessError error);
    void finish(const QString& sentence);

    GroupProcess m_process;
    QTimer m_timeout;
    bool m_timedOut = false;
    bool m_finished = false;
    std::optional<int> m_exitCode;
};
