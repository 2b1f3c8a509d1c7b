#pragma once

#include <QFile>
#include <QObject>
#include <QProcess>
#include <QTimer>
#include <memory>

#include "packaging/driver/PackagingFailure.h"
#include "widgets/LogLineReader.h"

/// One run of the packing script: starts it, reads its output, keeps its log. Ends with finished(), exactly
/// once; its destruction ends the script, which then leaves no package. GUI thread.
class PackagingRun : public QObject {
    Q_OBJECT

public:
    enum class End { Packed, Failed, Cancelled };

    static constexpr int StartTimeoutMs = 30000;
    static constexpr int KillTimeoutMs = 5000;  ///< for the script to end by itself

    explicit PackagingRun(QObject* parent = nullptr);
    ~PackagingRun() override;

    /// The log goes to package.log in `logDirectory`, which is made if it is missing.
    void start(const QString& bottleName, const QString& saveDirectory, const QString& compression,
               const QString& logDirectory);
    /// Has the script end; finished() follows.
    void cancel();
    bool isRunning() const { return m_isOpening || m_process->state() != QProcess::NotRunning; }
    /// Why there is no package: in the user's language, or else the script's last sentence.
    QString failureText() const;
    QString logPath() const { return m_logPath; }

    /// The percentage that a line of the script tells, within 0 and 100; -1 for any other line.
    static double progressOf(const QString& line);

Q_SIGNALS:
    void progress(double percent);
    /// A line for the user, without home directories; from standard error or not.
    void line(const QString& text, bool isError);
    void finished(PackagingRun::End end);

private:
    void take(const QStringList& lines, bool areErrors);
    void takeErrors(const QStringList& lines);
    void end(End end);

    QProcess* m_process;  ///< may outlive this object
    LogLineReader m_output;
    LogLineReader m_errors;
    QString m_logPath;
    std::shared_ptr<QFile> m_log;
    bool m_isOpening = false;  ///< the log
    QTimer m_startTimer;
    QTimer m_killTimer;
    PackagingFailure m_failure;
    QString m_lastError;
    bool m_isCancelled = false;
    bool m_hasEnded = false;
};
