#include "core/base/ToolProcess.h"

#include <signal.h>
#include <unistd.h>

#include <QDebug>
#include <QProcess>

namespace {

constexpr int ReapMs = 3000;
constexpr int QuotedErrorBytes = 300;

/// A child that leads a process group of its own, so that its children can be killed with it.
class GroupProcess : public QProcess {
public:
    void killGroup() {
        if (processId() > 0)
            ::kill(-pid_t(processId()), SIGKILL);
        kill();
    }

protected:
    void setupChildProcess() override { ::setpgid(0, 0); }
};

void collect(const QByteArray& bytes, QByteArray& into, bool& truncated) {
    const int room = ToolProcess::MaxOutputBytes - into.size();
    into.append(bytes.constData(), qMin(room, bytes.size()));
    truncated = truncated || bytes.size() > room;
}

ToolProcess::Result finish(GroupProcess& process, int timeoutMs) {
    ToolProcess::Result result;
    const auto drain = [&] {
        collect(process.readAllStandardOutput(), result.standardOutput, result.truncated);
        collect(process.readAllStandardError(), result.standardError, result.truncated);
    };
    // While the child runs: one that prints without end would fill the memory.
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, drain);
    QObject::connect(&process, &QProcess::readyReadStandardError, &process, drain);

    const bool ended = process.waitForFinished(qMax(int(ToolProcess::NoTimeLimit), timeoutMs)) ||
                       process.state() == QProcess::NotRunning;
    if (!ended) {
        process.killGroup();
        process.waitForFinished(ReapMs);
    }
    drain();
    process.disconnect();
    if (!ended)
        result.state = ToolProcess::State::TimedOut;
    else if (process.error() == QProcess::FailedToStart)
        result.state = ToolProcess::State::FailedToStart;
    else if (process.exitStatus() == QProcess::CrashExit)
        result.state = ToolProcess::State::Crashed;
    else
        result.state = ToolProcess::State::Exited;
    if (result.state == ToolProcess::State::Exited)
        result.exitCode = process.exitCode();
    return result;
}

void report(const QString& program, const QStringList& arguments, int timeoutMs, const QString& error,
            const ToolProcess::Result& result) {
    switch (result.state) {
        case ToolProcess::State::FailedToStart:
            qWarning() << "tool failed to start:" << program << arguments << error;
            break;
        case ToolProcess::State::Crashed:
            qWarning() << "tool crashed:" << program << arguments;
            break;
        case ToolProcess::State::TimedOut:
            qWarning() << "tool did not end within" << timeoutMs << "ms:" << program << arguments;
            break;
        case ToolProcess::State::Exited:
            if (result.exitCode != 0)
                qWarning() << "tool ended with" << result.exitCode << program << arguments
                           << result.standardError.left(QuotedErrorBytes);
            break;
    }
    if (result.truncated)
        qWarning() << "tool printed too much, the rest is dropped:" << program << arguments;
}

}  // namespace

ToolProcess::Result ToolProcess::runQuietly(const QString& program, const QStringList& arguments) {
    GroupProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    return finish(process, DefaultTimeoutMs);
}

ToolProcess::Result ToolProcess::run(const QString& program, const QStringList& arguments, int timeoutMs,
                                     const QProcessEnvironment& environment) {
    GroupProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    if (!environment.isEmpty())
        process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const Result result = finish(process, timeoutMs);
    report(program, arguments, timeoutMs, process.errorString(), result);
    return result;
}
