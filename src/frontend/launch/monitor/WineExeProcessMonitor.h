#pragma once

#include <QObject>
#include <QProcess>

#include "launch/monitor/MonitorCycle.h"
#include "launch/monitor/MonitorProtocol.h"

/// Monitors a bottle from inside Wine: runs enum_process_window.exe in it and signals when the launched
/// program shows its first window and when it has exited. That cannot be seen from outside, since Wine's
/// processes end neither with the program's first process nor with its last window.
class WineExeProcessMonitor : public QObject {
    Q_OBJECT

public:
    explicit WineExeProcessMonitor(QObject* parent = nullptr);
    ~WineExeProcessMonitor() override;

    /// If a taskkill for this bottle is still running, waits for it asynchronously, since it would end the
    /// new tool.
    void start(const QString& bottleName);
    /// True from start() until stop(), appQuit() or the exit of the tool.
    bool isWatching() const {
        return startTime != 0 && (m_isWaiting || monitorProcess.state() != QProcess::NotRunning);
    }

    /// No signal follows. May be called at any time. Blocks for at most 200 ms while a child starts and while
    /// another is killed. If other monitors watch the same bottle, no taskkill is run; the tool exits when
    /// its output is closed.
    void stop();

    /// If the program keeps running without a window after it had one, emit appLingers() instead of
    /// appQuit().
    bool waitsForAll = false;
    bool crashed = false;     ///< a crash was detected since the last start()
    bool windowSeen = false;  ///< the program has shown a window since the last start()

Q_SIGNALS:
    /// A cycle is complete.
    void processListUpdate(QMap<QString, QString> processList, QList<QPair<QString, QString>> windowList);
    void allProcessClear();
    void appQuit();
    void appLingers();
    void appStart();

private Q_SLOTS:
    void onProcessStdout();
    void onProcessListUpdate(const QMap<QString, QString>& processList,
                             const QList<QPair<QString, QString>>& windowList);

private:
    void startTool(int run, bool mayWait);
    void killTool();
    void onMonitorFinished();

    QProcess monitorProcess;
    qint64 startTime = 0;  ///< ms since the epoch; 0 when not monitoring
    QString bottleName;
    MonitorProtocol m_protocol;
    MonitorCycle m_cycle;
    int m_run = 0;             ///< number of the current start()
    bool m_isWaiting = false;  ///< for a taskkill to exit
};
