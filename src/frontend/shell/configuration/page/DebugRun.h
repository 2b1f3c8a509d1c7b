#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>

#include "launch/script/WineLauncher.h"
#include "shell/configuration/page/LiveLog.h"
#include "shell/configuration/rules/EntryList.h"

/// One program at a time, started from the configuration window with what Wine prints on it. A program goes
/// on when its run is destroyed: only stop() ends it, and its log is still kept where the user wants it. GUI
/// thread.
class DebugRun : public QObject {
    Q_OBJECT
public:
    struct Request {
        QString bottle;
        QJsonObject record;  ///< of the bottle
        ProgramEntry program;
        QStringList environment;  ///< "KEY=value"
        QString logPath;          ///< where the log is kept, too, when the run has ended; may be empty
        bool inTerminal = false;
    };

    explicit DebugRun(QObject* parent);
    ~DebugRun() override;

    bool isRunning() const { return m_launcher || m_isReadingLog; }
    /// Does nothing while a run is under way.
    void start(const Request& request);
    /// Ends the program, which takes at most two seconds.
    void stop();

    const ProgramRef& program() const { return m_ref; }
    /// The file that the launch script writes.
    const QString& logPath() const { return m_logPath; }

Q_SIGNALS:
    void linesRead(const QVector<LiveLogLine>& lines);
    void started();
    /// Once for each start, after the last line. The text is for the user; empty when the program was
    /// started. `hasRun` is false when not even the launch script was.
    void ended(const QString& errorText, bool hasRun);
    /// The log could not be kept.
    void failed(const QString& errorText);

private:
    /// Tells `run`, unless it is null, how that ended.
    static void keepLog(const QString& from, const QString& to, DebugRun* run);
    void onEnd(WineLauncher* launcher, const QString& errorText, bool hasRun);

    QPointer<WineLauncher> m_launcher;
    LiveLog* m_log = nullptr;     ///< of the last run
    bool m_isReadingLog = false;  ///< the rest of it, after the end of the script
    ProgramRef m_ref;
    QString m_logPath;      ///< of the running program
    QString m_keptLogPath;  ///< where the user wants it; may be empty
};
