#include "shell/configuration/page/DebugRun.h"

#include <fcntl.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>

#include "backend/BottleUtils.h"
#include "backend/InBackground.h"
#include "fenk/system/OwnedFd.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/script/LauncherExit.h"
#include "programs/ProgramRuns.h"

namespace {
constexpr int StopGraceMs = 1500;  // the service itself kills a program after a second
constexpr qint64 PieceBytes = 1 << 20;

bool copyFile(const QString& from, const QString& to) {
    QFile source(from);
    QSaveFile target(to);
    if (!source.open(QIODevice::ReadOnly) || !target.open(QIODevice::WriteOnly))
        return false;
    while (!source.atEnd()) {
        const QByteArray piece = source.read(PieceBytes);
        if (piece.isEmpty() || target.write(piece) != piece.size())
            return false;
    }
    return target.commit();
}
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
    connect(launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), launcher,
            &QObject::deleteLater);
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
                onEnd(launcher, LauncherExit::errorText(launcher->report(), name));
            });
    connect(launcher, &QProcess::errorOccurred, this, [this, launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onEnd(launcher, tr("The launch script cannot be run. Please install Cellarix again."));
    });
    ProgramRuns::instance()->setStarting(m_ref, true);
    launcher->launchProgram(m_ref.uuid);
    m_logPath = launcher->logPath();
    if (!m_launcher)
        return;
    AppBootingStateManager::instance()->startRecording(m_ref.bottle, m_ref.uuid);
    Q_EMIT started();
}

bool DebugRun::emptyLog(const QString& path) {
    const bool hasFolder = !path.isEmpty() && QDir().mkpath(QFileInfo(path).path());
    // A link could lead to a file that is not the bottle's, and a pipe would wait for ever.
    const Fenk::OwnedFd file(
        hasFolder ? ::open(QFile::encodeName(path).constData(),
                           O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0644)
                  : -1);
    if (file.isValid())
        return true;
    qWarning().noquote() << "cannot empty the log" << path;
    return false;
}

void DebugRun::onEnd(WineLauncher* launcher, const QString& errorText) {
    if (launcher != m_launcher)
        return;
    m_launcher = nullptr;
    launcher->deleteLater();
    ProgramRuns::instance()->setStarting(m_ref, false);
    if (AppBootingStateManager::instance()->isRecording(m_ref.uuid))
        AppBootingStateManager::instance()->finishRecording(m_ref.uuid, !errorText.isEmpty());
    keepLog();
    if (!errorText.isEmpty())
        qWarning().noquote() << errorText;
    connect(m_log, &LiveLog::ended, this, [this, errorText] {
        m_isReadingLog = false;
        Q_EMIT ended(errorText);
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

/// The launch script always writes the program's own log.
void DebugRun::keepLog() {
    if (m_keptLogPath.isEmpty())
        return;
    const auto copy = [from = m_logPath, to = m_keptLogPath] { return copyFile(from, to); };
    inBackground(this, copy, [this, path = m_keptLogPath](bool isKept) {
        if (isKept)
            return;
        qWarning().noquote() << "cannot write the log to" << path;
        Q_EMIT failed(tr("The log could not be written to %1.").arg(path));
    });
}
