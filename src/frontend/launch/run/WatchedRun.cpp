#include "launch/run/WatchedRun.h"

#include <QDebug>
#include <QJsonObject>
#include <utility>

#include "backend/BottlesConfig.h"
#include "core/base/WineNames.h"
#include "launch/LaunchText.h"
#include "launch/bottle/LaunchBottle.h"
#include "launch/monitor/WineExeProcessMonitor.h"
#include "launch/run/LaunchedFile.h"
#include "launch/script/WineLauncher.h"

namespace {

constexpr int TickMs = 1000;
constexpr int TerminalWindowMs = 3000;
constexpr int SilenceMs = 75000;  // a launch script waits 60 s for an installation, and says so then
constexpr int ExitGraceMs = 500;
constexpr int MonitorRestartMs = 1000;
constexpr int MaximumMonitorRestarts = 6;  // of five cycles each

}  // namespace

WatchedRun::WatchedRun(const Program& program, LaunchBottle* bottle, const QString& startError,
                       QObject* parent)
    : QObject(parent),
      m_program(program),
      m_bottle(bottle),
      m_monitor(new WineExeProcessMonitor),
      m_launcher(new WineLauncher(this)) {
    m_end.startError = startError;
    m_secondTimer.setInterval(TickMs);
    m_silenceTimer.setSingleShot(true);
    m_silenceTimer.setInterval(SilenceMs);
    connectParts();
}

WatchedRun::~WatchedRun() {
    abandon();
    if (m_launcher->isOpen())
        m_launcher->close();
    if (m_monitor->isWatching())
        m_monitor->stop();
    m_launcher->deleteLater();
    m_monitor->deleteLater();
}

void WatchedRun::connectParts() {
    connect(m_launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &WatchedRun::onLauncherFinished);
    // Queued: a script that can't be started fails before start() returns, and whoever starts a launch needs
    // it to outlive that.
    qRegisterMetaType<QProcess::ProcessError>();
    connect(m_launcher, &QProcess::errorOccurred, this, &WatchedRun::onLauncherError, Qt::QueuedConnection);
    connect(m_launcher, &QProcess::readyReadStandardOutput, this, [this] {
        if (m_silenceTimer.isActive())
            m_silenceTimer.start();
    });
    connect(m_monitor, &WineExeProcessMonitor::appStart, this, &WatchedRun::onAppStart);
    connect(m_monitor, &WineExeProcessMonitor::appQuit, this, &WatchedRun::onAppQuit);
    connect(m_monitor, &WineExeProcessMonitor::appLingers, this, &WatchedRun::onAppLingers);
    connect(m_monitor, &WineExeProcessMonitor::processListUpdate, this, &WatchedRun::onProcesses);
    connect(BottlesConfig::instance(), &BottlesConfig::endRequested, this, &WatchedRun::onEndRequested);
    connect(&m_secondTimer, &QTimer::timeout, this, &WatchedRun::onTick);
    connect(&m_silenceTimer, &QTimer::timeout, this, &WatchedRun::onSilence);
}

void WatchedRun::start() {
    m_state = State::Starting;
    m_secondTimer.start();
    m_bottle->withRecord(this, [this](const QJsonObject& record) {
        if (m_state == State::Starting)
            launch(record);
    });
}

void WatchedRun::launch(const QJsonObject& record) {
    m_state = State::Running;
    m_launcher->setBottle(m_bottle->name(), record);
    const bool isConsole = m_program.file->isConsole();
    m_launcher->setCli(isConsole);
    if (isConsole)
        launchInTerminal();
    else
        launchWatched();
    m_end.seconds = 0;  // without the wait for the record
    m_secondTimer.start();
    if (!m_program.uuid.isEmpty())
        m_launcher->launchProgram(m_program.uuid);
    else if (!m_program.file->isStoredProgram())
        m_launcher->launchExe(m_program.file->path(), {});
}

/// The terminal's window is none of the program's, so that its coming up is taken for granted.
void WatchedRun::launchInTerminal() {
    Q_EMIT emitMsg(LaunchText::tr("This application is a console application, launch in terminal"), MsgLine);
    QTimer::singleShot(TerminalWindowMs, this, [this] {
        if (isRunning())
            Q_EMIT windowPopuped();
    });
}

void WatchedRun::launchWatched() {
    m_launcher->addEnvironment("WINEDEBUG=" + WineNames::launchDebugChannels());
    m_monitor->waitsForAll = m_program.file->isInstaller();
    m_monitor->start(m_bottle->name());
    m_silenceTimer.start();
}

void WatchedRun::abandon() {
    m_state = State::Ended;
    m_secondTimer.stop();
    m_silenceTimer.stop();
    m_launcher->disconnect(this);
    m_monitor->disconnect(this);
}

void WatchedRun::closeLauncher() {
    if (m_launcher->state() != QProcess::NotRunning) {
        const QSignalBlocker quiet(m_launcher);
        m_launcher->close();
    }
}

void WatchedRun::onTick() {
    if (m_program.name.isEmpty())
        return;
    ++m_end.seconds;
    Q_EMIT emitMsg(
        LaunchText::tr("Launching %1 in %2 seconds").arg(m_program.name, QString::number(m_end.seconds)),
        MsgStatus);
}

void WatchedRun::onAppStart() {
    qInfo() << "============ app start ============";
    Q_EMIT windowPopuped();
}

void WatchedRun::onAppQuit() {
    qInfo() << "============ app exit ============";
    qInfo().noquote() << "isCrashed? " << (m_monitor->crashed ? "true" : "false");
    if (m_monitor->windowSeen || m_launcher->state() == QProcess::NotRunning ||
        m_monitorRestarts >= MaximumMonitorRestarts) {
        finish(m_state == State::HandedOver ? m_end.exitCode : 0);
        return;
    }
    if (m_hasProcesses) {
        // The launch script, which knows the exit code, ends at the same time.
        QTimer::singleShot(ExitGraceMs, this, [this] { finish(0); });
        return;
    }
    // The monitor gave up before there was anything to see, and the program has not ended: the machine is
    // slow. A bottle that is being ended takes the script along within that second.
    QTimer::singleShot(MonitorRestartMs, this, &WatchedRun::restartMonitor);
}

void WatchedRun::restartMonitor() {
    if (!isRunning() || m_launcher->state() == QProcess::NotRunning)
        return;
    qInfo() << "no process yet; looking again";
    ++m_monitorRestarts;
    m_monitor->start(m_bottle->name());
}

/// The library knows a file's program by an id that this launch has not heard of.
void WatchedRun::onEndRequested(const QString& bottle, const QString& programId) {
    const bool isOurs = programId.isEmpty() || programId == m_program.uuid ||
                        (m_program.uuid.isEmpty() && !WineNames::isPublicBottle(bottle));
    if (bottle != m_bottle->name() || !isOurs || !isRunning())
        return;
    m_end.isEndedFromOutside = true;
    if (m_state == State::Starting)
        finish(0);
}

void WatchedRun::tellInstalled() {
    if (!std::exchange(m_hasToldInstalled, true))
        Q_EMIT mayHaveInstalled();
}

void WatchedRun::onAppLingers() {
    qInfo().noquote() << "the set-up in" << m_bottle->name() << "goes on without a window";
    tellInstalled();
    Q_EMIT lingers();
}

/// A handed-over program of which nothing is left has ended: this is known here sooner than to the monitor,
/// which allows for a slow start.
void WatchedRun::onProcesses(const QMap<QString, QString>& processes) {
    m_hasProcesses = m_hasProcesses || !processes.isEmpty();
    if (m_silenceTimer.isActive())
        m_silenceTimer.start();
    if (m_state != State::HandedOver)
        return;
    if (processes.isEmpty() && !m_monitor->windowSeen)
        finish(m_end.exitCode);
    else if (!processes.isEmpty() && m_monitor->windowSeen && m_monitor->waitsForAll)
        tellInstalled();
}

/// Most installers and launchers start another process and exit, all is well, before there is a window; and
/// set-ups do so at any time. The monitor tells what becomes of it, and always comes to an end. A script that
/// was killed has not told what became of the program, which is a failure.
void WatchedRun::onLauncherFinished(int exitCode, QProcess::ExitStatus status) {
    if (m_launcher->state() == QProcess::Running)
        return;
    qInfo() << "============ app finished ============";
    const bool isExit = status == QProcess::NormalExit;
    if (isRunning()) {
        m_end.exitCode = exitCode;
        m_end.isExitCodeKnown = isExit;
        if (isExit && LauncherExit::isEndedFromOutside(exitCode))
            m_end.isEndedFromOutside = true;
    }
    if (isExit && m_monitor->isWatching() &&
        (m_monitor->windowSeen ? m_program.file->isInstaller() : exitCode == 0))
        m_state = State::HandedOver;
    else
        finish(isExit ? exitCode : LauncherExit::NotStarted);
}

void WatchedRun::onLauncherError(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart)
        return;
    qWarning() << "cannot start" << m_launcher->program() << m_launcher->errorString();
    m_end.startError = LaunchText::tr("The launch script cannot be started. Install Cellarix anew.");
    finish(LauncherExit::NotStarted);
}

/// When Wine's server dies while others start, they wait for it for ever, the program and the monitor alike.
void WatchedRun::onSilence() {
    qWarning().noquote() << "nothing was heard of" << m_bottle->name() << "for long; Wine seems to hang";
    m_end.isSilent = true;
    finish(0);
}

void WatchedRun::finish(int exitCode) {
    if (!isRunning()) {
        qInfo() << "app finished event is processing";
        return;
    }
    qInfo() << "exe finished: " << exitCode;
    if (m_state != State::Starting)
        m_end.script = m_launcher->report();
    m_state = State::Ended;
    m_secondTimer.stop();
    m_silenceTimer.stop();
    if (m_monitor->isWatching())
        m_monitor->stop();
    m_end.exitCode = exitCode;
    m_end.windowSeen = m_monitor->windowSeen;
    m_end.crashed = m_monitor->crashed;
    m_end.logPath = m_launcher->logPath();
    if (m_end.isStopped())
        qInfo() << "ended from outside";
    Q_EMIT ended(m_end);
}
