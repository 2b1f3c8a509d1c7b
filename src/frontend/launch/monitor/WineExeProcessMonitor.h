#pragma once

#include <QObject>
#include <QProcess>

#include "launch/monitor/MonitorCycle.h"
#include "launch/monitor/MonitorProtocol.h"

/// Watches a bottle from the inside: runs enum_process_window.exe in it and tells when the launched program
/// has shown its first window and when it is gone. Wine's own processes end neither with the first process of
/// a program nor with its last window, so that nothing outside knows.
class WineExeProcessMonitor : public QObject {
    Q_OBJECT

public:
    explicit WineExeProcessMonitor(QObject* parent = nullptr);
    /// Stops.
    ~WineExeProcessMonitor() override;

    /// Lets a taskkill that is still on its way into the bottle arrive first, or it would end the new tool.
    void start(const QString& bottleName);
    /// From start() to stop(), appQuit() or the death of the tool.
    bool isWatching() const {
        return startTime != 0 && (m_isWaiting || monitorProcess.state() != QProcess::NotRunning);
    }

    /// Nothing is told afterwards. May be called at any time. Waits at most 200 ms for a child to start and
    /// for the end of another that is killed. While others watch the same bottle nothing is killed in it by
    /// name: the tool ends itself soon after nobody reads it any more.
    void stop();

    /// What goes on without a window, once there was one, is not given up: appLingers() comes instead of
    /// appQuit().
    bool waitsForAll = false;
    bool crashed = false;     ///< a crash was seen since the last start
    bool windowSeen = false;  ///< the program has shown a window since then

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
    qint64 startTime = 0;  ///< in ms since the epoch, 0 when not monitoring
    QString bottleName;
    MonitorProtocol m_protocol;
    MonitorCycle m_cycle;
    int m_run = 0;             ///< counts the starts
    bool m_isWaiting = false;  ///< for a taskkill to end
};
