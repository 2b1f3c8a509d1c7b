#include "bottleservice/jobs/SetupCommand.h"

#include <QDebug>
#include <QProcessEnvironment>

#include "bottleservice/wine/LaunchData.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

namespace {

constexpr int TimeoutMs = 30 * 60 * 1000;
constexpr int LoggedBytes = 4000;
const char Overrides[] = "WINEDLLOVERRIDES";

Reason reasonOf(const WineCommand& ended, const QString& program, const QString& detail) {
    if (ended.hasTimedOut())
        return Reason(Reason::CommandSlow, {program});
    if (ended.exitCode())
        return Reason(Reason::CommandCode, {program, QString::number(*ended.exitCode())});
    return ended.hasStarted() ? Reason(Reason::CommandCrashed, {program})
                              : Reason(Reason::CommandNotStarted, {program, detail});
}

}  // namespace

SetupCommand::SetupCommand(const Runner& runner, const QString& bottlePath, const QJsonObject& record,
                           const Manifest::Command& command, QObject* parent)
    : QObject(parent), m_runner(runner), m_bottlePath(bottlePath), m_record(record), m_command(command) {}

void SetupCommand::start() {
    m_process = new WineCommand(m_runner.wine, QStringList(m_command.program) + m_command.arguments,
                                environment(), this);
    // A plain name must not find a file of the user.
    m_process->setDirectory(m_bottlePath + "/drive_c");
    connect(m_process, &WineCommand::finished, this, [this](const QString& errorText) {
        if (!errorText.isEmpty())
            qWarning().noquote() << "output of a failed command:" << m_process->output().right(LoggedBytes);
        Q_EMIT finished(errorText.isEmpty() ? Reason() : reasonOf(*m_process, m_command.program, errorText));
    });
    m_process->start(TimeoutMs);
}

void SetupCommand::cancel() {
    if (m_process)
        m_process->kill();
}

/// Of two entries for a name the last one counts.
QString SetupCommand::overrides(const QString& ofBottle) {
    QStringList all{"mscoree,mshtml=", ofBottle, "start.exe,winebrowser.exe,winemenubuilder.exe="};
    all.removeAll(QString(""));
    return all.join(';');
}

QProcessEnvironment SetupCommand::environment() const {
    QJsonObject variables = LaunchData::environment(m_bottlePath, m_record);
    variables.insert(Overrides, overrides(variables[Overrides].toString()));
    variables.insert("WINEDEBUG", "-all");
    return WineEnvironment::forProcess(variables);
}
