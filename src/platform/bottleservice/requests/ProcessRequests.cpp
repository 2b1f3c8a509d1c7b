#include "bottleservice/requests/ProcessRequests.h"

#include <QJsonArray>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/bottles/WindowsCommandLine.h"
#include "bottleservice/jobs/StopBottleJob.h"
#include "bottleservice/jobs/StopProgramJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/RequestChecks.h"
#include "bottleservice/wine/DetachedCommand.h"
#include "bottleservice/wine/LaunchData.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;

namespace {

constexpr int MaximumCommandCharacters = 32767;  // the limit of Windows
constexpr int MaximumIdCharacters = 128;

}  // namespace

ProcessRequests::ProcessRequests(BottleEngine* engine, QObject* parent)
    : QObject(parent),
      m_engine(engine),
      m_watch(engine->bottles().store()),
      m_runs(engine->bottles().store()) {
    connect(&m_watch, &ProgramWatch::exited, this, &ProcessRequests::programExited);
    connect(&m_runs, &RunMonitor::started, this, &ProcessRequests::programStarted);
    connect(&m_runs, &RunMonitor::ended, this, &ProcessRequests::programEnded);
}

void ProcessRequests::watchPrograms() {
    m_watch.start();
    m_runs.start();
}

Answer ProcessRequests::running() {
    QJsonArray programs;
    for (const auto& [key, pids] : m_runs.check()) {
        QJsonArray numbers;
        for (const pid_t pid : pids)
            numbers.append(pid);
        programs.append(QJsonObject{{"bottle", key.first}, {"program", key.second}, {"pids", numbers}});
    }
    return Answer::of(JsonText::compact(programs));
}

void ProcessRequests::onProgramsChanged() {
    m_runs.checkSoon();
}

void ProcessRequests::killProgram(const QString& bottle, const QString& programId, const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    if (programId.isEmpty() || programId.size() > MaximumIdCharacters) {
        reply(Answer::failure(Fault::InvalidArgs, "The program's id is empty or too long."));
        return;
    }
    m_engine->enqueueStop(
        bottle, std::make_unique<StopProgramJob>(m_engine->bottles().store(), bottle, programId, reply));
}

void ProcessRequests::killWineServer(const QString& bottle, const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    m_engine->enqueueStop(bottle, std::make_unique<StopBottleJob>(m_engine->bottles().store(), bottle,
                                                                  m_engine->bottles().runners(), reply));
}

void ProcessRequests::runCommand(const QString& bottle, const QString& commandLine, const Reply& reply) {
    if (RequestChecks::refuseName(bottle, reply))
        return;
    const QStringList arguments = WindowsCommandLine::split(commandLine);
    // Wine would read a leading "-" as an option of its own.
    if (arguments.isEmpty() || arguments.first().startsWith('-') || commandLine.contains(QChar(0)) ||
        commandLine.size() > MaximumCommandCharacters) {
        reply(
            Answer::failure(Fault::InvalidArgs, "The command line is empty, too long or names no program."));
        return;
    }
    m_engine->renew(bottle);
    m_engine->enqueue(bottle, reply, [this, bottle, arguments] { return startCommand(bottle, arguments); });
}

Answer ProcessRequests::startCommand(const QString& bottle, const QStringList& arguments) {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    const Runner runner = m_engine->bottles().runnerOf(*settings);
    if (runner.wine.isEmpty())
        return Answer::failure(Fault::Failed,
                               Reason(Reason::NoRunner, {BottleName::shown(settings->runner())}));
    const QString path = m_engine->bottles().pathOf(bottle);
    const QJsonObject variables = LaunchData::environment(path, settings->record());
    const QString fault =
        DetachedCommand::start(runner.wine, arguments, WineEnvironment::forProcess(variables), path);
    return fault.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, fault);
}
