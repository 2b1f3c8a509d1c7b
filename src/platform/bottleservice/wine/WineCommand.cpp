#include "bottleservice/wine/WineCommand.h"

#include <unistd.h>
#include <csignal>

#include <QFileInfo>

#include "bottleservice/wine/ProcessPriority.h"

namespace {

constexpr int MaximumOutputBytes = 16 * 1024;

}  // namespace

void WineCommand::GroupProcess::setLowPriority() {
    m_isLow = true;
    m_withNice = ProcessPriority::canRaise();
}

void WineCommand::GroupProcess::setupChildProcess() {
    setpgid(0, 0);
    if (m_isLow)
        ProcessPriority::lowerSelf(m_withNice);
}

WineCommand::WineCommand(const QString& program, const QStringList& arguments,
                         const QProcessEnvironment& environment, QObject* parent)
    : QObject(parent) {
    m_process.setProgram(program);
    m_process.setArguments(arguments);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_timeout.setSingleShot(true);
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &WineCommand::readOutput);
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        m_timedOut = true;
        kill();
    });
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &WineCommand::onFinished);
    connect(&m_process, &QProcess::errorOccurred, this, &WineCommand::onError);
}

WineCommand::~WineCommand() {
    m_process.disconnect(this);
    kill();
    m_process.waitForFinished(1000);
}

void WineCommand::start(int timeoutMs) {
    m_timeout.start(timeoutMs);
    m_process.start(QIODevice::ReadOnly);
}

void WineCommand::holdTimeout() {
    if (!m_timeout.isActive())
        return;
    m_heldMs = qMax(1, m_timeout.remainingTime());
    m_timeout.stop();
}

void WineCommand::continueTimeout() {
    if (m_heldMs > 0 && !m_finished)
        m_timeout.start(m_heldMs);
    m_heldMs = 0;
}

void WineCommand::kill() {
    if (m_process.state() == QProcess::NotRunning)
        return;
    const pid_t group = pid_t(m_process.processId());
    if (group > 1)
        ::kill(-group, SIGKILL);
    m_process.kill();
}

void WineCommand::readOutput() {
    m_output += m_process.readAllStandardOutput();
    if (m_output.size() > MaximumOutputBytes)
        m_output = m_output.right(MaximumOutputBytes);
}

void WineCommand::onFinished(int exitCode, QProcess::ExitStatus status) {
    const QString command = QFileInfo(m_process.program()).fileName();
    if (!m_timedOut && status == QProcess::NormalExit)
        m_exitCode = exitCode;
    if (m_timedOut)
        finish(command + " took too long and was ended.");
    else if (status == QProcess::CrashExit)
        finish(command + " was killed or crashed.");
    else if (exitCode != 0)
        finish(QString("%1 ended with code %2.").arg(command).arg(exitCode));
    else
        finish({});
}

void WineCommand::onError(QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart)
        finish(QString("%1 could not be started: %2.").arg(m_process.program(), m_process.errorString()));
}

void WineCommand::finish(const QString& errorText) {
    if (m_finished)
        return;
    m_finished = true;
    m_timeout.stop();
    Q_EMIT finished(errorText);
}
