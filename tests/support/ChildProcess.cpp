#include "support/ChildProcess.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QDeadlineTimer>
#include <QProcessEnvironment>
#include <QtTest/QTest>

namespace TestSupport {

namespace {
constexpr int TerminateMs = 2000;
}

ChildProcess::ChildProcess(QObject* parent) : QProcess(parent) {
    setProcessEnvironment(QProcessEnvironment::systemEnvironment());
}

ChildProcess::~ChildProcess() {
    stop();
}

void ChildProcess::setVariable(const QString& name, const QString& value) {
    QProcessEnvironment environment = processEnvironment();
    environment.insert(name, value);
    setProcessEnvironment(environment);
}

void ChildProcess::stop() {
    if (state() == NotRunning)
        return;
    terminate();
    if (!waitForFinished(TerminateMs)) {
        kill();
        waitForFinished(TerminateMs);
    }
}

QString ChildProcess::readLineWithin(int timeoutMs) {
    const QDeadlineTimer deadline(timeoutMs);
    setReadChannel(StandardOutput);
    while (!canReadLine()) {
        if (deadline.hasExpired() || !waitForReadyRead(int(deadline.remainingTime())))
            return {};
    }
    return QString::fromLocal8Bit(readLine()).trimmed();
}

void ChildProcess::setupChildProcess() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

RunResult runProcess(const QString& program, const QStringList& arguments, const QStringList& variables,
                     int timeoutMs) {
    ChildProcess process;
    for (const QString& variable : variables)
        process.setVariable(variable.section('=', 0, 0), variable.section('=', 1));
    process.start(program, arguments);
    RunResult result;
    if (!process.waitForStarted(timeoutMs) || !process.waitForFinished(timeoutMs)) {
        result.errors = program + ": " + process.errorString();
        return result;
    }
    result.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.errors = QString::fromLocal8Bit(process.readAllStandardError());
    if (process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    return result;
}

bool waitUntil(const std::function<bool()>& condition, int timeoutMs) {
    return QTest::qWaitFor(condition, timeoutMs);
}

}  // namespace TestSupport
