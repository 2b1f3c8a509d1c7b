#include "launch/monitor/WineExeProcessMonitor.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QMultiHash>
#include <QPointer>
#include <QTimer>

#include "core/base/Paths.h"

namespace {

constexpr int TaskkillStartMs = 200;
constexpr int TaskkillEndMs = 10000;

struct Shared {
    QMultiHash<QString, const WineExeProcessMonitor*> watching;  ///< by bottle name
    QMultiHash<QString, QProcess*> taskkills;                    ///< running ones, by bottle name
};

/// State shared by all monitors of the process; they all live in one thread.
Shared& shared() {
    static Shared state;
    return state;
}

}  // namespace

WineExeProcessMonitor::WineExeProcessMonitor(QObject* parent) : QObject(parent) {
    // Wine's messages go to standard error; a pipe would fill up, since nobody reads it.
    monitorProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(&monitorProcess, &QProcess::readyReadStandardOutput, this,
            &WineExeProcessMonitor::onProcessStdout);
    connect(&monitorProcess, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &WineExeProcessMonitor::onMonitorFinished);
    connect(this, &WineExeProcessMonitor::processListUpdate, this,
            &WineExeProcessMonitor::onProcessListUpdate);
}

WineExeProcessMonitor::~WineExeProcessMonitor() {
    monitorProcess.disconnect(this);
    if (startTime != 0 || monitorProcess.state() != QProcess::NotRunning)
        stop();
}

void WineExeProcessMonitor::start(const QString& name) {
    if (monitorProcess.state() != QProcess::NotRunning || m_isWaiting) {
        qWarning() << "monitoring already started";
        return;
    }
    shared().watching.remove(bottleName, this);  // left by a failed start
    bottleName = name;
    startTime = QDateTime::currentMSecsSinceEpoch();
    shared().watching.insert(bottleName, this);
    ++m_run;
    m_cycle = {};
    m_protocol = {};
    crashed = windowSeen = false;
    startTool(m_run, true);
}

void WineExeProcessMonitor::startTool(int run, bool mayWait) {
    if (run != m_run || startTime == 0 || monitorProcess.state() != QProcess::NotRunning)
        return;
    QProcess* taskkill = shared().taskkills.value(bottleName);
    m_isWaiting = taskkill && mayWait;
    if (m_isWaiting) {
        connect(taskkill, &QObject::destroyed, this, [this, run] { startTool(run, true); });
        QTimer::singleShot(TaskkillEndMs, this, [this, run] { startTool(run, false); });
        return;
    }
    const QStringList arguments{bottleName, Paths::processWindowTool()};
    qDebug() << "launch:" << Paths::launcherScript() << arguments;
    monitorProcess.start(Paths::launcherScript(), arguments);
}

/// Handles one line per event: a receiver of the signal may stop, restart or delete objects before the next
/// line.
void WineExeProcessMonitor::onProcessStdout() {
    if (startTime == 0 || !monitorProcess.canReadLine())
        return;
    QString line = QString::fromUtf8(monitorProcess.readLine());
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    qDebug() << "stdout:" << line;
    if (monitorProcess.canReadLine())
        QMetaObject::invokeMethod(this, &WineExeProcessMonitor::onProcessStdout, Qt::QueuedConnection);
    if (m_protocol.read(line))
        Q_EMIT processListUpdate(m_protocol.processList, m_protocol.windowList);
}

void WineExeProcessMonitor::onProcessListUpdate(const QMap<QString, QString>& processList,
                                                const QList<QPair<QString, QString>>& windowList) {
    const QPointer<WineExeProcessMonitor> self(this);
    const int run = m_run;
    const auto isSameRun = [&] { return self && self->m_run == run && self->startTime != 0; };
    MonitorCycle cycle = m_cycle;
    const bool isGone = cycle.step(processList, windowList, [&] {
        windowSeen = true;
        Q_EMIT appStart();
    });
    // A receiver of appStart() may have stopped, restarted or deleted this object.
    if (!isSameRun())
        return;
    if (isGone && waitsForAll && windowSeen && !processList.isEmpty()) {
        m_cycle.restartTimeout();
        Q_EMIT appLingers();
        return;
    }
    m_cycle = cycle;
    crashed = cycle.crashed;
    if (!isGone)
        return;
    stop();
    Q_EMIT appQuit();
}

void WineExeProcessMonitor::stop() {
    startTime = 0;  // onMonitorFinished() must not emit appQuit()
    m_isWaiting = false;
    shared().watching.remove(bottleName, this);
    if (!shared().watching.contains(bottleName))
        killTool();
    if (monitorProcess.isOpen())
        monitorProcess.close();
    if (monitorProcess.state() != QProcess::NotRunning) {
        qInfo() << "stop monitoring";
        monitorProcess.kill();
    }
}

/// Only Wine can end a program inside the bottle. The taskkill is killed with the application, or it could
/// end the tool of a later one; a tool whose output is closed exits anyway.
void WineExeProcessMonitor::killTool() {
    auto* taskkill = new QProcess(QCoreApplication::instance());
    connect(taskkill, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), taskkill,
            &QObject::deleteLater);
    const QString bottle = bottleName;
    shared().taskkills.insert(bottle, taskkill);
    connect(taskkill, &QObject::destroyed, QCoreApplication::instance(),
            [bottle, taskkill] { shared().taskkills.remove(bottle, taskkill); });
    taskkill->start(Paths::launcherScript(),
                    {bottleName, "taskkill.exe", "/f", "/im", "enum_process_window.exe"});
    if (!taskkill->waitForStarted(TaskkillStartMs)) {
        qWarning() << "taskkill.exe for enum_process_window lauch failed";
        if (taskkill->state() == QProcess::NotRunning)
            taskkill->deleteLater();
    }
}

void WineExeProcessMonitor::onMonitorFinished() {
    if (startTime == 0)
        return;
    qInfo() << "Monitor process quit";
    startTime = 0;
    shared().watching.remove(bottleName, this);
    Q_EMIT appQuit();
}
