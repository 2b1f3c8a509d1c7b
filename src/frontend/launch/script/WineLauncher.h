#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <optional>

#include "launch/script/LauncherExit.h"

/// The one place where a Windows program becomes a Linux process: runs launcher.py for a bottle and owns
/// every argument and environment variable of a launch. Its end signal is QProcess::finished; a script that
/// can't be started shows as QProcess::errorOccurred(FailedToStart), a failed launch as the script's exit
/// code. Options are set before one of the launch operations. The object has no Qt parent of its own: the
/// given parent only owns it logically, and whoever created it ends it with deleteLater.
class WineLauncher : public QProcess {
    Q_OBJECT
public:
    explicit WineLauncher(QObject* parent);
    WineLauncher(const QString& bottle, QObject* parent);

    /// Also finds the directory for logs, unless a log path is set already. Waits for the service.
    void setBottle(const QString& bottle);
    /// With the bottle's record at hand nothing here waits for the service any more.
    void setBottle(const QString& bottle, const QJsonObject& record);
    /// Adds "KEY=value"; a later entry wins over an earlier one of the same key.
    void addEnvironment(const QString& entry);

    void setCli(bool on) { m_cli = on; }  ///< run in a terminal
    void setShowLogs(bool on) {
        m_showLogs = on;
    }                                       ///< Wine's output also on standard error, to be read from here
    void setWait(bool on) { m_wait = on; }  ///< end only when the program's last process has ended
    void setLogPath(const QString& path) { m_logPath = path; }
    QString logPath() const { return m_logPath; }
    QString bottle() const { return m_bottleName; }
    /// What the script of the last start has told so far.
    LauncherExit::Report report();

    /// Starts a stored program of the bottle; its log is wine-program-<uuid>.txt.
    void launchProgram(const QString& programUuid);
    /// Starts a file or one of Wine's own programs.
    void launchExe(const QString& exePath, const QStringList& args);
    /// Runs one Windows command line, with no log and no options.
    void launchCommand(const QString& command);

private:
    QStringList commonOptions();
    void setLogDirectory(const QString& bottlePath);
    void addWindowClass(const QString& name);
    void startScript(const QString& what, const QStringList& arguments);

    bool m_cli = false;
    QString m_bottleName;
    std::optional<QJsonObject> m_programs;  ///< of the bottle, when its record was handed in
    QString m_logPath;
    QString m_logDir;
    bool m_showLogs = false;
    bool m_wait = false;
    QStringList m_environment;
    QByteArray m_output;  ///< of the script, MaximumOutput at most
};
