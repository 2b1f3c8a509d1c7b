#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include "launch/script/LauncherExit.h"

/// Runs launcher.py to start a Windows program in a bottle. Every launch goes through this class; it decides
/// all arguments and environment variables. Set options before the launch operation. QProcess::finished
/// reports the end, QProcess::errorOccurred(FailedToStart) a script that can't be started, and the exit code
/// of the script a failed launch (see LauncherExit). Has no QObject parent, in spite of the argument: whoever
/// created it calls deleteLater().
class WineLauncher : public QProcess {
    Q_OBJECT
public:
    explicit WineLauncher(QObject* parent);
    WineLauncher(const QString& bottle, QObject* parent);

    /// Also sets the log directory, unless a log path is set. Blocks on the service.
    void setBottle(const QString& bottle);
    /// The same with the bottle's record, without blocking.
    void setBottle(const QString& bottle, const QJsonObject& record);
    /// Adds "KEY=value"; the last entry of a key is used.
    void addEnvironment(const QString& entry);

    void setCli(bool on) { m_cli = on; }  ///< run in a terminal
    void setShowLogs(bool on) {
        m_showLogs = on;
    }  ///< also write Wine's output to standard error, readable from this process
    void setWait(bool on) { m_wait = on; }  ///< exit only after the last process of the program
    void setLogPath(const QString& path) { m_logPath = path; }
    QString logPath() const { return m_logPath; }
    QString bottle() const { return m_bottleName; }
    /// What the script of the last start has printed so far.
    LauncherExit::Report report();

    /// Starts a stored program of the bottle; its log is wine-program-<uuid>.txt.
    void launchProgram(const QString& programUuid);
    /// Starts a file or a program of Wine.
    void launchExe(const QString& exePath, const QStringList& args);
    /// Runs a Windows command line, without a log and without options.
    void launchCommand(const QString& command);

private:
    QStringList commonOptions();
    void addWindowClass(const QString& name);
    void startScript(const QString& what, const QStringList& arguments);

    bool m_cli = false;
    QString m_bottleName;
    QJsonObject m_programs;  ///< of the bottle
    QString m_logPath;
    QString m_logDir;
    bool m_showLogs = false;
    bool m_wait = false;
    QStringList m_environment;
    QByteArray m_output;  ///< of the script, at most MaximumOutput
};
