#pragma once

#include <QDateTime>
#include <QFutureWatcher>
#include <QIcon>
#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QTimer>

#include "launch/MsgType.h"

class WineLauncher;

/// One launch without any window of its own: inspects the file, picks or creates a bottle, starts the program
/// through WineLauncher and reports how it ended, in words and signals. Owned by an ExeFileRunner.
/// Construction blocks until the file has been read (its key parts, at most 11 MiB, and its version block);
/// the choice of the bottle goes on in the background. Every start ends in exactly one of runSuccessed and
/// runFailed, save an unreadable file, which only logs.
class ExeFileExecutor : public QObject {
    Q_OBJECT
public:
    /// An empty path is for programs that are stored in a bottle already.
    ExeFileExecutor(const QString& exePath, QObject* parent);
    ~ExeFileExecutor() override;

    void start();
    void launchProgram(const QString& bottle, const QString& programUuid);

    /// Waits for the bottle choice if it is still under way.
    QString bottlesName();
    QIcon exeIcon();
    QString displayName();
    QJsonObject peInfo();
    QString md5();

    void setAppName(const QString& name) { m_appName = name; }
    /// 1 for a launch of a file, 0 for a stored program.
    void setFirstRun(int firstRun) { m_firstRun = firstRun; }
    int seconds() const { return m_seconds; }

Q_SIGNALS:
    void emitStep(const QString& text, MsgType recordType = MsgLine);
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    void windowPopuped();
    void Fixing();
    void runSuccessed();
    void runFailed(bool canWeFix = false, bool isSuccessed = false);

public Q_SLOTS:
    void onExeFinished(int exitCode);

private:
    void chooseBottle();
    void createBottle();
    void launch();
    void onTick();
    void onLauncherFinished(int exitCode, QProcess::ExitStatus status);
    void onLauncherError(QProcess::ProcessError error);

    QString m_exePath;
    QString m_programUuid;
    QString m_bottlesName;
    QFutureWatcher<QString> m_watcher;  ///< on the choice of the bottle
    QString m_runner;
    QString m_appName;
    WineLauncher* m_launcher;
    bool m_launchFailed = false;
    bool m_finished = false;
    int m_seconds = 0;
    QTimer m_secondTimer;
    QJsonObject m_peInfo;
    QString m_md5;
    int m_firstRun = 1;
};
