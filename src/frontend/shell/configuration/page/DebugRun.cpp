#include "shell/configuration/page/DebugRun.h"

#include <QDebug>
#include <QTimer>

#include "backend/BottleUtils.h"
#include "backend/PendingWork.h"
#include "backend/WhenDone.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/script/LauncherExit.h"
#include "programs/ProgramRuns.h"
#include "shell/configuration/page/LogFile.h"

namespace {
constexpr int StopGraceMs = 1500;  // the service itself kills a program after a second
constexpr int MiB = 1 << 20;
}  // namespace

DebugRun::DebugRun(QObject* parent) : QObject(parent) {}

DebugRun::~DebugRun() {
    if (!m_launcher)
        return;
    WineLauncher* launcher = m_launcher;
    launcher->disconnect(this);
    ProgramRuns::instance()->setStarting(m_ref, false);
    // The program would wait for somebody who reads what it prints.
    connect(launcher, &QProcess::readyReadStandardError, launcher,
            [launcher] { launcher->readAllStandardError(); });
    // The user still wants the log where it was chosen to be.
    const PendingWork::Hold hold = m_keptLogPath.isEmpty() ? nullptr : PendingWork::instance()->hold();
    connect(launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), launcher,
            [launcher, hold, from = m_logPath, to = m_keptLogPath] {
                launcher->deleteLater();
                keepLog(from, to, nullptr);
            });
    connect(launcher, &QProcess::errorOccurred, launcher, [launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            launcher->deleteLater();
    });
}

void DebugRun::start(const Request& request) {
    if (isRunning())
        return;
    m_ref = {request.bottle, request.program.id};
    delete m_log;
    m_log = new LiveLog(this);
    connect(m_log, &LiveLog::linesRead, this, &DebugRun::linesRead);
    m_keptLogPath = request.logPath;
    auto* launcher = new WineLauncher(this);
    m_launcher = launcher;
    // The program may be newer than the record.
    QJsonObject record = request.record;
    record.insert("External_Programs", QJsonObject{{m_ref.uuid, request.program.record}});
    launcher->setBottle(request.bottle, record);
    launcher->setCli(request.inTerminal);
    launcher->setShowLogs(true);
    launcher->setWait(true);
    for (const QString& entry : request.environment)
        launcher->addEnvironment(entry);
    connect(launcher, &QProcess::readyReadStandardError, this,
            [log = m_log, launcher] { log->add(launcher->readAllStandardError()); });
    connect(launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this, launcher, name = request.program.name()] {
                m_log->add(launcher->readAllStandardError());
                onEnd(launcher, LauncherExit::errorText(launcher->report(), name), true);
            });
    connect(launcher, &QProcess::errorOccurred, this, [this, launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onEnd(launcher, tr("The launch script cannot be run. Please install Cellarix again."), false);
    });
    ProgramRuns::instance()->setStarting(m_ref, true);
    launcher->launchProgram(m_ref.uuid);
    m_logPath = launcher->logPath();
    if (m_launcher)
        AppBootingStateManager::instance()->startRecording(m_ref.bottle, m_ref.uuid);
    Q_EMIT started();
}

void DebugRun::onEnd(WineLauncher* launcher, const QString& errorText, bool hasRun) {
    if (launcher != m_launcher)
        return;
    m_launcher = nullptr;
    launcher->deleteLater();
    ProgramRuns::instance()->setStarting(m_ref, false);
    if (AppBootingStateManager::instance()->isRecording(m_ref.uuid))
        AppBootingStateManager::instance()->finishRecording(m_ref.uuid, !errorText.isEmpty());
    keepLog(m_logPath, m_keptLogPath, this);
    if (!errorText.isEmpty())
        qWarning().noquote() << errorText;
    connect(m_log, &LiveLog::ended, this, [this, errorText, hasRun] {
        m_isReadingLog = false;
        Q_EMIT ended(errorText, hasRun);
    });
    m_isReadingLog = true;
    m_log->end();
}

void DebugRun::stop() {
    if (!m_launcher)
        return;
    BottleUtils::killProgram(m_ref.bottle, m_ref.uuid);
    // The script ends with its program; one that does not is ended itself.
    QTimer::singleShot(StopGraceMs, m_launcher.data(), [launcher = m_launcher] {
        if (launcher && launcher->state() != QProcess::NotRunning)
            launcher->terminate();
    });
}

/// The launch script always writes the program's own log. The process does not end before the copy.
void DebugRun::keepLog(const QString& from, const QString& to, DebugRun* run) {
    if (to.isEmpty())
        return;
    const auto copy = [from, to] {
        const LogFile::Copy written = LogFile::copy(from, to);
        if (!written.isWritten)
            qWarning().noquote() << "cannot write the log to" << to;
        return written;
    };
    const QFuture<LogFile::Copy> copying = PendingWork::instance()->run(QThreadPool::globalInstance(), copy);
    if (!run)
        return;
    whenDone(run, copying, [run, to](const LogFile::Copy& written) {
        if (!written.isWritten)
            Q_EMIT run->failed(tr("The log could not be written to %1.").arg(to));
        else if (written.isShortened)
            Q_EMIT run->linesRead({{tr("%1 keeps the last %2 MiB of the log.")
                                        .arg(to, QString::number(LogFile::KeptBytes / MiB)),
                                    false}});
    });
}
